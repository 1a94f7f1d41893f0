#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Drives a running application through the accessibility bus, as a screen reader
would, for as long as a test needs it: one process that keeps its connection open and
takes one command a line on standard input, so a test that presses hundreds of
controls does not start Python hundreds of times.

    atspi_driver.py APPLICATION

Commands (fields separated by tabs), each answered with one line:
    press ROLE NAME        runs the control's first action      -> "pressed"
    settext ROLE NAME TEXT replaces an editable text's contents -> "set"
    centre ROLE NAME       where its centre is on the screen    -> "X Y"
    text ROLE NAME         what it reads, on one line           -> the text
Only controls that are showing count. The application is looked up again for every
command (it may have been restarted in between); a control is waited for up to
LEDGEWISE_ATSPI_WAIT seconds (5 by default), else the answer is "missing ROLE NAME".
"""
import os
import sys
import time

import pyatspi

# Started as a script, not as part of a package: the shared search sits beside it.
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from atspi_common import find  # noqa: E402


def control(application, role, name, wait):
    deadline = time.time() + wait
    while True:
        try:
            for app in pyatspi.Registry.getDesktop(0):
                if app is not None and app.name.lower() == application.lower():
                    found = find(app, role, name, showing_only=True)
                    if found is not None:
                        return found
        except Exception:  # the application went away while we looked
            pass
        if time.time() >= deadline:
            return None
        time.sleep(0.05)


def run(application, fields, wait):
    command, role, name = fields[0], fields[1], fields[2]
    found = control(application, role, name, wait)
    if found is None:
        return "missing %s %s" % (role, name)
    try:
        if command == "press":
            found.queryAction().doAction(0)
            return "pressed"
        if command == "settext":
            found.queryEditableText().setTextContents(fields[3])
            return "set"
        if command == "text":
            text = found.queryText()
            return text.getText(0, text.characterCount).replace("\n", " ")
        if command == "centre":
            box = found.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
            return "%d %d" % (box.x + box.width // 2, box.y + box.height // 2)
    except Exception as error:  # noqa: BLE001 - the answer says what went wrong
        return "failed %s" % str(error).replace("\n", " ")
    return "unknown command %s" % command


def main():
    application = sys.argv[1]
    wait = float(os.environ.get("LEDGEWISE_ATSPI_WAIT", "5"))
    for line in sys.stdin:
        fields = line.rstrip("\n").split("\t")
        answer = run(application, fields, wait) if len(fields) >= 3 else "bad command"
        sys.stdout.write(answer + "\n")
        sys.stdout.flush()
    return 0


if __name__ == "__main__":
    sys.exit(main())
