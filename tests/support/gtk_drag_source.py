#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Ledgewise developers
# SPDX-License-Identifier: GPL-3.0-or-later
# Another application to drag from, written with GTK 3 as browsers and file managers
# are: a small window at the position given whose label starts a drag when the mouse
# is pressed on it (as tests/support/drag_source.cpp does), offering the text as
# text/plain and, when given, a link as text/uri-list. It prints "ready" once shown and
# how each drag ended ("copy" or "ignored"); it stays for the next drag. An URI
# argument of @FILE offers every line of FILE as one link of the list.
#   gtk_drag_source.py X Y TEXT [URI|@FILE]
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402

TEXT_TYPES = ("text/plain;charset=utf-8", "UTF8_STRING", "text/plain")
URI_LIST = "text/uri-list"
URI_INFO = 1


def say(line):
    # One write per line: a reader never sees half of one.
    sys.stdout.write(line + "\n")
    sys.stdout.flush()


def main():
    if len(sys.argv) < 4:
        return 2
    x, y, text = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
    uri = sys.argv[4] if len(sys.argv) > 4 else None
    uris = [uri] if uri else []
    if uri and uri.startswith("@"):
        with open(uri[1:], encoding="utf-8") as listed:
            uris = [line.rstrip("\n") for line in listed if line.strip()]

    targets = Gtk.TargetList.new([])
    if uri:
        targets.add(Gdk.Atom.intern(URI_LIST, False), 0, URI_INFO)
    for name in TEXT_TYPES:
        targets.add(Gdk.Atom.intern(name, False), 0, 0)

    # A pop-up window: placed where asked, with or without a window manager.
    window = Gtk.Window(type=Gtk.WindowType.POPUP)
    window.set_title("gtk drag source")
    window.move(x, y)
    window.set_default_size(100, 100)
    box = Gtk.EventBox()
    box.add(Gtk.Label(label="drag me"))
    box.add_events(Gdk.EventMask.BUTTON_PRESS_MASK)
    window.add(box)

    failed = {"now": False}

    def pressed(widget, event):
        if event.button != 1:
            return False
        failed["now"] = False
        widget.drag_begin_with_coordinates(targets, Gdk.DragAction.COPY | Gdk.DragAction.MOVE, 1, event, -1, -1)
        return True

    def data_get(_widget, _context, selection, info, _time):
        if info == URI_INFO:
            selection.set_uris(uris)
        else:
            selection.set_text(text, -1)

    def drag_failed(_widget, _context, _result):
        failed["now"] = True
        return True  # no animation of the icon flying back

    def drag_end(_widget, _context):
        say("ignored" if failed["now"] else "copy")

    box.connect("button-press-event", pressed)
    box.connect("drag-data-get", data_get)
    box.connect("drag-failed", drag_failed)
    box.connect("drag-end", drag_end)
    window.connect("map-event", lambda *_: GLib.idle_add(lambda: say("ready")) and False)
    window.show_all()
    Gtk.main()
    return 0


if __name__ == "__main__":
    sys.exit(main())
