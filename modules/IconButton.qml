// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Ledgewise.Surfaces

// A symbol that acts as a plain button, named for assistive technology by what it does.
Symbol {
    id: button
    property string accessibleName
    signal pressed()

    Accessible.ignored: false
    Accessible.role: Accessible.Button
    Accessible.name: accessibleName
    Accessible.onPressAction: button.pressed()

    MouseArea {
        anchors.fill: parent
        anchors.margins: -4
        onClicked: button.pressed()
    }
}
