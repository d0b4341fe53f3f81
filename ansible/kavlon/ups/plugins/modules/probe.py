#!/usr/bin/python
# Copyright (c) 2026 The KAVLON maintainers
# SPDX-License-Identifier: MIT

DOCUMENTATION = r"""
module: probe
short_description: Looks for a UPS on the serial ports
version_added: 1.0.0
description:
  - Asks the ports C(/dev/ttyS0) to C(/dev/ttyS3) for a UPS and tells for each its model, or why there is none. A port that
    a monitor uses is not asked.
  - Changes nothing, and works in check mode, too.
options:
  database:
    description: The database of UPS models.
    type: path
    default: /var/lib/kavlon/upstyp.ups
seealso:
  - module: kavlon.ups.config
author:
  - The KAVLON maintainers (@kavlon)
"""

EXAMPLES = r"""
- name: Look for the UPS
  kavlon.ups.probe:
  register: probe

- name: Stop where there is none
  ansible.builtin.assert:
    that: probe.ports | selectattr('model')
"""

RETURN = r"""
ports:
  description: One for each serial port.
  returned: success
  type: list
  elements: dict
  contains:
    port:
      description: The device.
      type: str
      sample: /dev/ttyS1
    state:
      description: What came of it, C(found), C(locked), C(denied), C(silent), C(unknown) or C(failed).
      type: str
      sample: found
    model:
      description: The model, a value for I(UpsModel); null when none was found.
      type: str
      sample: K-TRN010VQ-100
    reason:
      description: Why none was found, for a person; else null.
      type: str
      sample: null
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.kavlon.ups.plugins.module_utils.kavcfg import ask_kavcfg


def main():
    module = AnsibleModule(
        argument_spec={"database": {"type": "path", "default": "/var/lib/kavlon/upstyp.ups"}},
        supports_check_mode=True,
    )
    result = ask_kavcfg(module, ["-u", module.params["database"], "--json", "probe"])[1]
    module.exit_json(changed=False, ports=result["ports"])


if __name__ == "__main__":
    main()
