#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Presses a control of a running application through the accessibility bus, as a screen
reader would: finds the application by name, then the first control with the given
role and name, and runs its first action.

    atspi_press.py APPLICATION ROLE NAME      (ROLE: "push button", "menu item", ...)
Prints "pressed" and exits 0, or says what it could not find and exits 1.

    atspi_press.py --tree APPLICATION
Reads what a screen reader can read of the application: every node on screen (state
"showing"), depth first, one "role|name" a line (a line break in a name as "\\n").
Exits 1 when the application is not on the bus within 15 seconds.
"""
import os
import sys
import time

import pyatspi

# Started as a script, not as part of a package: the shared search sits beside it.
sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from atspi_common import find  # noqa: E402


def showing(node, depth=0):
    if depth > 40 or node is None:
        return
    try:
        if not node.getState().contains(pyatspi.STATE_SHOWING) and depth > 0:
            return
        name = (node.name or "").replace("\\", "\\\\").replace("\n", "\\n")
        yield node.getRoleName() + "|" + name
        for index in range(node.childCount):
            yield from showing(node.getChildAtIndex(index), depth + 1)
    except Exception:  # a node that went away while we looked
        return


def read_tree(application):
    deadline = time.time() + 15
    while time.time() < deadline:
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.name.lower() == application.lower() and app.childCount > 0:
                for line in showing(app):
                    print(line)
                return 0
        time.sleep(0.2)
    print(f"no application named {application!r}")
    return 1


def main():
    if sys.argv[1] == "--tree":
        return read_tree(sys.argv[2])
    application, role, name = sys.argv[1:4]
    deadline = time.time() + 15
    seen = []
    while time.time() < deadline:
        desktop = pyatspi.Registry.getDesktop(0)
        seen = [app.name for app in desktop if app is not None]
        for app in desktop:
            if app is not None and app.name.lower() == application.lower():
                control = find(app, role, name)
                if control is not None:
                    control.queryAction().doAction(0)
                    print("pressed")
                    return 0
        time.sleep(0.2)
    print(f"no {role} named {name!r} in {application!r}; applications: {seen}")
    return 1


if __name__ == "__main__":
    sys.exit(main())
