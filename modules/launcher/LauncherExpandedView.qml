// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces
import Ledgewise.Modules

// The pinned apps, files and sites: a click opens one; App, File and Add site add more.
ColumnLayout {
    id: view
    required property QtObject module
    property alias websiteDraft: field.text
    // The parts are laid out one below the other by the surface that hosts the panel
    // (its stack holds the panel's loader), with the spacing of that stack and no
    // padding of the panel's own.
    spacing: parent && parent.parent && parent.parent.spacing !== undefined ? parent.parent.spacing : 10

    Text {
        objectName: "launcherTitle"
        text: "Launcher"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 12
        font.weight: Font.DemiBold
    }

    Text {
        objectName: "launcherHint"
        visible: view.module.rows.length === 0
        text: "Pin apps, files, or sites."
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
            objectName: "launcherRow_" + index
            Layout.fillWidth: true
            symbol: modelData.symbol
            // The kind's symbol in a column 16 wide, so the titles line up.
            iconWidth: 16
            iconHeight: 0
            title: modelData.title
            onClicked: view.module.open(modelData.id)

            IconButton {
                objectName: "removeButton"
                anchors.verticalCenter: parent.verticalCenter
                name: "xmark"
                size: 9
                opacity: 0.35
                accessibleName: "Remove " + modelData.title
                onPressed: view.module.remove(modelData.id)
            }
        }
    }

    Text {
        objectName: "launcherNotice"
        visible: text.length > 0
        Layout.fillWidth: true
        text: view.module.notice
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        color: NotchChrome.ivory
        opacity: 0.7
        font.pixelSize: 11
    }

    RowLayout {
        spacing: 6
        Repeater {
            model: [{ title: "App", kind: "application" }, { title: "File", kind: "file" }]
            delegate: Rectangle {
                required property var modelData
                objectName: "add" + modelData.title
                implicitWidth: addLabel.implicitWidth + 16
                implicitHeight: addLabel.implicitHeight + 10
                radius: height / 2
                color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
                Accessible.role: Accessible.Button
                Accessible.name: modelData.title
                Accessible.onPressAction: add()
                function add() {
                    if (modelData.kind === "application")
                        view.module.addApplication()
                    else
                        view.module.addFile()
                }
                Text {
                    id: addLabel
                    anchors.centerIn: parent
                    text: parent.modelData.title
                    color: NotchChrome.ivory
                    font.pixelSize: 11
                    font.weight: Font.Medium
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: parent.add()
                }
            }
        }
    }

    RowLayout {
        spacing: 6
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: field.implicitHeight + 10
            radius: 6
            color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.06)
            TextInput {
                id: field
                objectName: "addressField"
                anchors.fill: parent
                anchors.leftMargin: 8
                anchors.rightMargin: 8
                verticalAlignment: TextInput.AlignVCenter
                color: NotchChrome.ivory
                font.pixelSize: 11
                clip: true
                selectByMouse: true
                Accessible.role: Accessible.EditableText
                Accessible.name: "Address"
                // Return adds nothing: only the button does.
                Keys.onReturnPressed: event => event.accepted = true
                Keys.onEnterPressed: event => event.accepted = true
                Text {
                    anchors.fill: parent
                    verticalAlignment: Text.AlignVCenter
                    visible: field.text.length === 0
                    text: "https://"
                    color: NotchChrome.ivory
                    opacity: 0.35
                    font.pixelSize: 11
                }
            }
        }
        Text {
            objectName: "addSiteButton"
            text: "Add site"
            color: NotchChrome.ivory
            font.pixelSize: 11
            Accessible.role: Accessible.Button
            Accessible.name: text
            Accessible.onPressAction: view.addSite()
            MouseArea {
                anchors.fill: parent
                anchors.margins: -4
                onClicked: view.addSite()
            }
        }
    }

    function addSite() {
        if (view.module.addWebsite(field.text))
            field.text = ""
    }
}
