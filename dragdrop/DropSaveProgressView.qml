// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// A save of a drop that is still running: how far it got, and a way to stop it. Binds
// to the saves model; stopping it is the only thing it does.
RowLayout {
    id: view
    // The saves model: saving, fraction, statusText, cancel().
    required property QtObject saves

    spacing: 8

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 4
        Text {
            objectName: "saveStatus"
            Layout.fillWidth: true
            text: view.saves.statusText
            // It names the file being saved, which came from outside.
            textFormat: Text.PlainText
            color: NotchChrome.ivory
            font.pixelSize: 11
            font.weight: Font.Medium
            elide: Text.ElideRight
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Rectangle {
            objectName: "saveBar"
            Layout.fillWidth: true
            implicitHeight: 4
            radius: 2
            color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.12)
            Accessible.role: Accessible.ProgressBar
            Accessible.name: view.saves.statusText
            Rectangle {
                width: parent.width * view.saves.fraction
                height: parent.height
                radius: parent.radius
                color: NotchChrome.ivory
            }
        }
    }

    Rectangle {
        id: cancelButton
        objectName: "cancelSave"
        implicitWidth: cancelLabel.implicitWidth + 16
        implicitHeight: cancelLabel.implicitHeight + 10
        radius: 8
        color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
        Accessible.role: Accessible.Button
        Accessible.name: "Cancel saving"
        Accessible.onPressAction: view.saves.cancel()
        Text {
            id: cancelLabel
            anchors.centerIn: parent
            text: "Cancel"
            color: NotchChrome.ivory
            font.pixelSize: 10
            font.weight: Font.Medium
        }
        MouseArea {
            anchors.fill: parent
            onClicked: view.saves.cancel()
        }
    }
}
