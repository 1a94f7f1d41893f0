// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// The soft shadow of an open surface: rings of faint black that grow out of the
// surface's rounded outline, darkest next to it. It lives in a window of its own around
// the surface, so the surface's window keeps exactly the surface's frame.
Item {
    id: root
    // The surface's corner radius, and how far the shadow reaches beyond it on the
    // left, the right and below (the surface hangs from the top edge).
    property real radius: 0
    property int spread: 16
    property bool shown: false
    readonly property int layers: 8

    Accessible.ignored: true

    Item {
        objectName: "surfaceShadow"
        anchors.fill: parent
        visible: root.shown

        Repeater {
            model: root.layers
            delegate: Rectangle {
                required property int index
                readonly property real grow: (index + 1) * root.spread / root.layers
                x: root.spread - grow
                y: -grow
                width: root.width - 2 * root.spread + 2 * grow
                height: root.height - root.spread + 2 * grow
                radius: root.radius + grow
                color: Qt.rgba(0, 0, 0, 0.05)
            }
        }
    }
}
