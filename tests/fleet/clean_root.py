"""A connection to hosts that share one root directory but for their /var."""

import os
import shlex

from ansible.errors import AnsibleError
from ansible.plugins.connection.local import Connection as LocalConnection

DOCUMENTATION = """
name: clean_root
short_description: Runs in a root directory
description: The command FLEET_ENTER enters it, with the name of the host and a line for the shell.
author: The KAVLON maintainers
extends_documentation_fragment: [connection_pipelining]
"""


class Connection(LocalConnection):
    transport = "clean_root"

    def exec_command(self, cmd, in_data=None, sudoable=True):
        words = [os.environ["FLEET_ENTER"], self._play_context.remote_addr, cmd]
        return super().exec_command(shlex.join(words), in_data, sudoable=False)

    def put_file(self, in_path, out_path):
        with open(in_path, "rb") as file:
            status, _, errors = self.exec_command("cat >" + shlex.quote(out_path), file.read())
        if status != 0:
            raise AnsibleError(errors.decode())
