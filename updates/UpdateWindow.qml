// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// What an update check found: a newer Ledgewise with its release notes and a button to
// its download page, "up to date", or why the check failed. Texts from the feed are
// shown as plain text.
Window {
    id: window
    required property var controller

    readonly property bool available: controller.state === 2 // UpdateController.available
    readonly property color ivory: Qt.rgba(0.96, 0.95, 0.93, 1)

    width: 400
    // Tall enough for a long reason to wrap above the buttons.
    height: Math.max(180, texts.implicitHeight + buttons.height + 60)
    minimumWidth: 320
    minimumHeight: 160
    color: Qt.rgba(0.14, 0.14, 0.14, 1)
    title: "Ledgewise Updates"

    component PushButton: Rectangle {
        id: button
        property alias text: label.text
        property bool isDefault: false
        signal activated()

        implicitWidth: label.implicitWidth + 32
        implicitHeight: 28
        radius: 6
        color: isDefault ? Qt.rgba(0.96, 0.95, 0.93, mouse.pressed ? 0.7 : 0.9)
                         : Qt.rgba(0.96, 0.95, 0.93, mouse.pressed ? 0.25 : 0.12)
        border.width: activeFocus ? 2 : 0
        border.color: window.ivory
        activeFocusOnTab: true
        Accessible.role: Accessible.Button
        Accessible.name: label.text
        Accessible.onPressAction: button.activated()
        Keys.onSpacePressed: button.activated()

        Text {
            id: label
            anchors.centerIn: parent
            textFormat: Text.PlainText
            color: button.isDefault ? "black" : window.ivory
            font.pixelSize: 13
        }
        MouseArea {
            id: mouse
            anchors.fill: parent
            onClicked: button.activated()
        }
    }

    Item {
        anchors.fill: parent
        anchors.margins: 20
        focus: true
        Keys.onEscapePressed: window.close()
        Keys.onReturnPressed: (window.available && window.controller.hasDownloadPage ? download : closeButton).activated()

        Column {
            id: texts
            anchors.left: parent.left
            anchors.right: parent.right
            spacing: 8

            Text {
                objectName: "heading"
                width: parent.width
                text: window.controller.heading
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: window.ivory
                font.pixelSize: 16
                font.bold: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                objectName: "detail"
                width: parent.width
                visible: text !== ""
                text: window.controller.detail
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: window.ivory
                opacity: 0.75
                font.pixelSize: 13
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
            Text {
                id: notes
                objectName: "releaseNotesLink"
                visible: window.controller.hasReleaseNotes
                text: "Release Notes"
                textFormat: Text.PlainText
                color: window.ivory
                font.pixelSize: 13
                font.underline: true
                activeFocusOnTab: true
                Accessible.role: Accessible.Link
                Accessible.name: text
                Accessible.onPressAction: window.controller.openReleaseNotes()
                Keys.onSpacePressed: window.controller.openReleaseNotes()
                MouseArea {
                    anchors.fill: parent
                    anchors.margins: -4
                    cursorShape: Qt.PointingHandCursor
                    onClicked: window.controller.openReleaseNotes()
                }
            }
        }

        Row {
            id: buttons
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            spacing: 10

            PushButton {
                id: closeButton
                objectName: "closeButton"
                text: "Close"
                isDefault: !download.visible
                onActivated: window.close()
            }
            PushButton {
                id: download
                objectName: "downloadButton"
                visible: window.available && window.controller.hasDownloadPage
                text: "Download"
                isDefault: true
                onActivated: window.controller.openDownloadPage()
            }
        }
    }
}
