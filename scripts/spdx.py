#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Every source file of Ledgewise says its licence in its first lines (SPDX).

    scripts/spdx.py          lists the files that do not, and fails if there are any
    scripts/spdx.py --add    adds the two lines where they are missing
"""
import subprocess
import sys

HOLDER = "SPDX-FileCopyrightText: 2026 Ledgewise developers"
LICENCE = "SPDX-License-Identifier: GPL-3.0-or-later"
COMMENTS = {".cpp": "//", ".h": "//", ".qml": "//", ".py": "#", ".sh": "#", ".cmake": "#", "CMakeLists.txt": "#"}


def comment_of(path):
    for ending, comment in COMMENTS.items():
        if path.endswith(ending):
            return comment
    return None


def main():
    add = "--add" in sys.argv[1:]
    files = subprocess.run(["git", "ls-files"], capture_output=True, text=True, check=True).stdout.split()
    missing = []
    for path in files:
        comment = comment_of(path)
        if comment is None or path.startswith("fuzz/corpus/"):
            continue
        with open(path, encoding="utf-8") as source:
            lines = source.read().split("\n")
        if any(LICENCE in line for line in lines[:5]):
            continue
        missing.append(path)
        if add:
            at = 1 if lines and lines[0].startswith("#!") else 0
            lines[at:at] = [f"{comment} {HOLDER}", f"{comment} {LICENCE}"]
            with open(path, "w", encoding="utf-8") as source:
                source.write("\n".join(lines))
    if missing and not add:
        print("Without a licence line (scripts/spdx.py --add adds it):")
        print("\n".join("  " + path for path in missing))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
