// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces
import Ledgewise.Modules

// The newest Downloads; a click opens a file with its default application.
ColumnLayout {
    id: view
    required property QtObject module
    spacing: 8

    Text {
        objectName: "downloadsHeader"
        text: "Downloads"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 12
        font.weight: Font.DemiBold
    }

    Text {
        objectName: "downloadsEmpty"
        visible: view.module.rows.length === 0
        Layout.topMargin: 8
        Layout.bottomMargin: 8
        text: "Nothing in Downloads yet."
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        opacity: 0.55
        font.pixelSize: 11
    }

    Repeater {
        model: view.module.rows
        delegate: PanelRow {
            required property var modelData
            required property int index
            objectName: "downloadsRow_" + index
            Layout.fillWidth: true
            symbol: "doc"
            // The symbol takes its natural width.
            iconWidth: 0
            iconHeight: 0
            title: modelData.name
            subtitle: modelData.state
            onClicked: view.module.open(modelData.url)
        }
    }
}
