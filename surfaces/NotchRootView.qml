// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Ledgewise.Surfaces

// One side surface: the dark rounded shape, and by presentation a small bar, a symbol
// with a short text, or the side's modules (the drop actions while something was
// dropped). Everything it shows comes from its controller and surface model.
Item {
    id: root
    required property QtObject controller
    readonly property QtObject surface: controller.surface
    readonly property string presentation: surface.presentation
    readonly property bool expanded: presentation === "expanded"

    Accessible.role: Accessible.Grouping
    Accessible.name: surface.side === "left" ? "Ledgewise left surface" : "Ledgewise right surface"

    Rectangle {
        objectName: "surfaceFill"
        anchors.fill: parent
        radius: root.controller.pillRadius
        color: NotchChrome.fill
        opacity: root.controller.fillOpacity
    }
    Rectangle {
        objectName: "classicRim"
        anchors.fill: parent
        radius: root.controller.pillRadius
        color: "transparent"
        border.width: 1
        border.color: NotchChrome.ivory
        opacity: 0.08
        visible: root.controller.classicRim
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onContainsMouseChanged: root.controller.hoverChanged(containsMouse)
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                root.controller.secondaryClicked()
            else
                root.controller.clicked()
        }
    }

    Item {
        id: content
        anchors.fill: parent
        anchors.leftMargin: root.presentation === "sleeping" ? 10 : 12
        anchors.rightMargin: anchors.leftMargin
        anchors.topMargin: root.expanded ? 4 : 6
        anchors.bottomMargin: anchors.topMargin

        Rectangle {
            objectName: "sleepingBar"
            visible: root.presentation === "sleeping"
            anchors.centerIn: parent
            width: 18
            height: 3
            radius: 1.5
            color: NotchChrome.ivory
            opacity: 0.22
        }

        // The symbol and its text as one row, centred in the surface; a text too long
        // for it is cut short at its end.
        Row {
            id: glanceRow
            objectName: "glanceRow"
            visible: root.presentation === "glance" || root.presentation === "active"
            anchors.centerIn: parent
            spacing: 6
            Symbol {
                id: glanceSymbol
                objectName: "glanceSymbol"
                name: root.surface.glanceSymbol
                size: 11
                anchors.verticalCenter: parent.verticalCenter
            }
            // Made when the row first shows: until a surface is hovered no text is laid
            // out at all, and the font machinery (about 2 MB) is not loaded.
            Loader {
                active: glanceRow.visible
                anchors.verticalCenter: parent.verticalCenter
                sourceComponent: Text {
                    objectName: "glanceText"
                    width: Math.min(implicitWidth, content.width - glanceSymbol.width - glanceRow.spacing)
                    // Hidden (sleeping or open), the row holds no text at all: a running
                    // countdown changes it every second, and a change no one sees must
                    // not cost the window a frame.
                    text: glanceRow.visible ? root.surface.glanceText : ""
                    // The newest copy or download is shown as it is, never as markup.
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                    color: NotchChrome.ivory
                    font.pixelSize: 11
                    font.weight: Font.Medium
                    elide: Text.ElideRight
                    maximumLineCount: 1
                }
            }
        }

        // The open panel is made on the first opening and dropped on each closing: a
        // sleeping surface holds none of its items, nor the layouts that place them.
        Loader {
            objectName: "expandedPanelLoader"
            anchors.fill: parent
            active: root.expanded
            // By its file, so that its file and the modules it imports load only then.
            Component.onCompleted: setSource(Qt.resolvedUrl("ExpandedPanel.qml"), { controller: root.controller })
        }
    }
}
