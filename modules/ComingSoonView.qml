// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// The panel of a module that is not built yet.
ColumnLayout {
    id: root
    required property string title

    spacing: 6

    Text {
        objectName: "comingSoonTitle"
        Layout.fillWidth: true
        Layout.topMargin: 4
        text: root.title
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        textFormat: Text.PlainText
        color: NotchChrome.ivory
        font.pixelSize: 12
        font.weight: Font.DemiBold
        horizontalAlignment: Text.AlignLeft
    }
    Text {
        objectName: "comingSoonMessage"
        Layout.fillWidth: true
        Layout.bottomMargin: 4
        text: "Coming in a later build"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        opacity: 0.62
        font.pixelSize: 11
        horizontalAlignment: Text.AlignLeft
    }
}
