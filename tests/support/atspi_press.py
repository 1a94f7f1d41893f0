#!/usr/bin/python3
"""Presses a control of a running application through the accessibility bus, as a screen
reader would: finds the application by name, then the first control with the given
role and name, and runs its first action.

    atspi_press.py APPLICATION ROLE NAME      (ROLE: "push button", "menu item", ...)
Prints "pressed" and exits 0, or says what it could not find and exits 1.
"""
import sys
import time

import pyatspi


def find(node, role, name, depth=0):
    if depth > 40 or node is None:
        return None
    try:
        if node.getRoleName() == role and node.name == name:
            return node
        for index in range(node.childCount):
            found = find(node.getChildAtIndex(index), role, name, depth + 1)
            if found is not None:
                return found
    except Exception:  # a node that went away while we looked
        return None
    return None


def main():
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
