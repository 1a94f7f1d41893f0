// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces
import Ledgewise.Modules

// The clipboard history: a click copies an entry back; pin and delete act on their row.
ColumnLayout {
    id: view
    required property QtObject module
    spacing: 8

    Text {
        objectName: "clipboardHeader"
        text: "Clipboard"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 12
        font.weight: Font.DemiBold
    }

    Text {
        objectName: "clipboardEmpty"
        visible: view.module.rows.length === 0
        Layout.topMargin: 8
        Layout.bottomMargin: 8
        text: "Copies stay on this computer."
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        opacity: 0.55
        font.pixelSize: 11
    }

    ListView {
        objectName: "clipboardList"
        visible: view.module.rows.length > 0
        Layout.fillWidth: true
        Layout.preferredHeight: Math.min(contentHeight, 220)
        clip: true
        spacing: 4
        boundsBehavior: Flickable.StopAtBounds
        model: view.module.rows
        delegate: PanelRow {
            required property var modelData
            objectName: "clipboardRow_" + index
            required property int index
            width: ListView.view.width
            symbol: modelData.symbol
            thumbnail: modelData.thumbnail
            title: modelData.title
            subtitle: modelData.kindLabel
            onClicked: view.module.copyBack(modelData.id)

            IconButton {
                objectName: "pinButton"
                anchors.verticalCenter: parent.verticalCenter
                name: modelData.isPinned ? "pin.fill" : "pin"
                size: 10
                opacity: modelData.isPinned ? 0.9 : 0.4
                // Named with the entry, so a screen reader tells the rows' buttons apart.
                accessibleName: (modelData.isPinned ? "Unpin " : "Pin ") + modelData.title
                onPressed: view.module.togglePin(modelData.id)
            }
            IconButton {
                objectName: "deleteButton"
                anchors.verticalCenter: parent.verticalCenter
                name: "xmark"
                size: 9
                opacity: 0.35
                accessibleName: "Delete " + modelData.title
                onPressed: view.module.remove(modelData.id)
            }
        }
    }
}
