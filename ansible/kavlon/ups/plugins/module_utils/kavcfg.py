# Copyright (c) 2026 The KAVLON maintainers
# SPDX-License-Identifier: MIT
"""Starts kavcfg, which knows the settings and their rules, and reads what it prints."""

import json
import os
import subprocess

REFUSED = 1  # a value is refused, or no UPS was found: what was printed tells


def started(program, words, text, directory):
    # Not run_command of the module, which loses what a program says that ends without reading its input.
    return subprocess.run(
        [program] + words,
        input=text,
        cwd=directory if os.path.isdir(directory) else None,
        env=dict(os.environ, LC_ALL="C.UTF-8"),
        capture_output=True,
        encoding="utf-8",
        errors="replace",
        check=False,
    )


def ask_kavcfg(module, words, text="", directory="/"):
    """Return the exit status, 0 or REFUSED, and the object that kavcfg prints.

    The text is its standard input, the directory where it works, when that is there. Every other
    end of kavcfg is that of the module.
    """
    program = module.get_bin_path("kavcfg")
    if program is None:
        module.fail_json(msg="kavcfg is not on this host; the role kavlon.ups.setup installs it")
    try:
        process = started(program, words, text, directory)
    except OSError as error:
        module.fail_json(msg="%s: %s" % (program, error.strerror))
    if process.returncode not in (0, REFUSED):
        module.fail_json(msg=process.stderr.strip() or "kavcfg ended with %d" % process.returncode)
    return process.returncode, json.loads(process.stdout)
