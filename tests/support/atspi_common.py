# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The node search the accessibility probes share (atspi_press.py, atspi_driver.py and
the probe test_panels_accessibility writes); they import it by path, from this folder."""
import pyatspi


def find(node, role, name, showing_only=False, depth=0):
    """The first node under `node`, depth first, with this role and name; with
    `showing_only`, hidden ones do not count."""
    if depth > 40 or node is None:
        return None
    try:
        if node.getRoleName() == role and node.name == name \
                and (not showing_only or node.getState().contains(pyatspi.STATE_SHOWING)):
            return node
        for index in range(node.childCount):
            found = find(node.getChildAtIndex(index), role, name, showing_only, depth + 1)
            if found is not None:
                return found
    except Exception:  # a node that went away while we looked
        return None
    return None
