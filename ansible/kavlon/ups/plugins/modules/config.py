#!/usr/bin/python
# Copyright (c) 2026 The KAVLON maintainers
# SPDX-License-Identifier: MIT

DOCUMENTATION = r"""
module: config
short_description: Changes the settings of the KAVLON UPS monitor
version_added: 1.0.0
description:
  - Gives settings of C(ups.cfg) their values, all of them or, when one is refused, none. What is so already is no change.
  - Makes the file with the defaults and these settings where there is none.
  - The host's C(kavcfg) tests the values and tells all that is wrong with them in one message; the manual page
    ups.cfg(5) tells the settings, C(kavcfg schema) prints their rules.
  - All other lines of the file stay as they are, with its owner and mode.
options:
  path:
    description: The file, or the directory of a file C(ups.cfg).
    type: path
    default: /var/lib/kavlon/ups.cfg
  settings:
    description:
      - Values by key, as C(ups.cfg) has them; C(kavcfg list) prints those of a machine that is set up.
      - Numbers, and true and false for yes and no, need no quotes. A null gives a setting its default.
      - Another I(UpsModel) than the present one brings its line settings, ratings and lists of jobs, but for what is
        given beside it.
    type: dict
    default: {}
  secrets:
    description: The same for passwords, which no output and no log shows.
    type: dict
    default: {}
  database:
    description: The database of UPS models, instead of C(upstyp.ups) beside the file.
    type: path
  japanese:
    description: Messages and default lists of jobs in Japanese, and Japanese texts in the file's EUC-JP.
    type: bool
    default: false
notes:
  - Supports C(check_mode) and C(diff_mode). When not even the directory is there, check mode shows the paths of a new
    file's logs without it.
seealso:
  - module: kavlon.ups.probe
author:
  - The KAVLON maintainers (@kavlon)
"""

EXAMPLES = r"""
- name: Set the monitor up
  kavlon.ups.config:
    settings:
      UpsModel: K-TRN010VQ-100
      UpsDevice: /dev/ttyS1:2400,n,8,1
      SysDownMins: 10
      UpTimeSupport: false
      Event7: LOGMSG("Battery low")O;EXECUTE("/usr/local/bin/page","ops")T120;
    secrets:
      PASSWORD: "{{ vault_ups_password }}"

- name: Give the interval its default again
  kavlon.ups.config:
    path: /srv/ups/ups.cfg
    settings:
      CheckRate: null
"""

RETURN = r"""
before:
  description: Values of the settings that change; null for a password, and where the file has none.
  returned: success
  type: dict
  sample: {CheckRate: "1"}
after:
  description: Their new values.
  returned: success
  type: dict
  sample: {CheckRate: "5"}
"""

import json
import os

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.kavlon.ups.plugins.module_utils.kavcfg import REFUSED, ask_kavcfg


def refuse(module, faults):
    module.fail_json(msg="nothing was changed: " + "; ".join(faults))


def check_places(module, settings, secrets):
    """A password in the settings would be shown, and another value in the secrets may be."""
    schema = ask_kavcfg(module, ["schema"])[1]
    passwords = {key.lower() for key, rule in schema["properties"].items() if rule.get("writeOnly")}
    shown = [key for key in settings if key.lower() in passwords]
    module.no_log_values.update(str(settings[key]) for key in shown)
    faults = [key + ": is a password, give it in secrets" for key in shown]
    faults += [key + ": is no password, give it in settings" for key in secrets if key.lower() not in passwords]
    if faults:
        refuse(module, faults)


def apply(module, path, values):
    """Return what kavcfg tells of the change: changed, before, after."""
    words = ["-f", path, "--json", "--new"]
    if module.params["database"]:
        words += ["-u", module.params["database"]]
    if module.params["japanese"]:
        words.append("--japanese")
    if module.check_mode:
        words.append("--dry-run")
    status, result = ask_kavcfg(module, words + ["apply", "-"], json.dumps(values), os.path.dirname(path))
    if status == REFUSED:
        refuse(module, [": ".join(filter(None, (fault["key"], fault["text"]))) for fault in result["faults"]])
    return result


def lines(values, passwords):
    shown = {key: value for key, value in values.items() if value is not None}
    shown.update((key, "(hidden)") for key in passwords)
    return "".join("%s=%s\n" % (key, shown[key]) for key in values if key in shown)


def diff(path, before, after):
    """A password, whose values are not told, is a new line."""
    passwords = [key for key in after if before[key] is None and after[key] is None]
    return {
        "before_header": path,
        "after_header": path,
        "before": lines(before, []),
        "after": lines(after, passwords),
    }


def main():
    module = AnsibleModule(
        argument_spec={
            "path": {"type": "path", "default": "/var/lib/kavlon/ups.cfg"},
            "settings": {"type": "dict", "default": {}},
            "secrets": {"type": "dict", "default": {}, "no_log": True},
            "database": {"type": "path"},
            "japanese": {"type": "bool", "default": False},
        },
        supports_check_mode=True,
    )
    path = module.params["path"]
    if os.path.isdir(path):
        path = os.path.join(path, "ups.cfg")
    settings, secrets = (module.params[name] or {} for name in ("settings", "secrets"))
    check_places(module, settings, secrets)
    result = apply(module, path, dict(settings, **secrets))
    changes = {word: result[word] for word in ("changed", "before", "after")}
    if module._diff:
        changes["diff"] = diff(path, result["before"], result["after"])
    module.exit_json(**changes)


if __name__ == "__main__":
    main()
