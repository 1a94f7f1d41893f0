// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// The timer's panel: presets and a custom number of minutes while idle; the running
// clock and Cancel while a countdown runs.
ColumnLayout {
    id: view
    required property QtObject module
    readonly property QtObject session: module.session
    property int customMinutes: module.initialCustomMinutes

    // The parts are laid out one below the other by the surface that hosts the panel
    // (its stack holds the panel's loader), with the spacing of that stack and no
    // padding of the panel's own.
    spacing: parent && parent.parent && parent.parent.spacing !== undefined ? parent.parent.spacing : 10

    Text {
        objectName: "timerTitle"
        text: "Timer"
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 12
        font.weight: Font.DemiBold
    }

    RowLayout {
        objectName: "presetRow"
        visible: !view.session.isRunning
        spacing: 6
        Repeater {
            model: view.module.presets
            delegate: Rectangle {
                id: preset
                required property int modelData
                objectName: "preset_" + modelData
                implicitWidth: presetLabel.implicitWidth + 16
                implicitHeight: presetLabel.implicitHeight + 10
                radius: height / 2
                color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
                Accessible.role: Accessible.Button
                Accessible.name: presetLabel.text
                Accessible.onPressAction: view.module.startMinutes(modelData)
                Text {
                    id: presetLabel
                    anchors.centerIn: parent
                    text: view.module.presetLabel(preset.modelData)
                    color: NotchChrome.ivory
                    font.pixelSize: 11
                    font.weight: Font.DemiBold
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: view.module.startMinutes(preset.modelData)
                }
            }
        }
    }

    RowLayout {
        objectName: "customRow"
        visible: !view.session.isRunning
        spacing: 8
        Text {
            objectName: "stepDown"
            text: "−"
            color: NotchChrome.ivory
            font.pixelSize: 11
            font.weight: Font.Medium
            opacity: view.customMinutes > view.module.minimumMinutes ? 1 : 0.35
            Accessible.role: Accessible.Button
            Accessible.name: "Fewer minutes"
            Accessible.onPressAction: view.customMinutes = view.module.stepped(view.customMinutes, -1)
            MouseArea {
                anchors.fill: parent
                anchors.margins: -4
                onClicked: view.customMinutes = view.module.stepped(view.customMinutes, -1)
            }
        }
        Text {
            objectName: "customLabel"
            text: view.module.stepperLabel(view.customMinutes)
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            color: NotchChrome.ivory
            font.pixelSize: 11
            font.weight: Font.Medium
        }
        Text {
            objectName: "stepUp"
            text: "+"
            color: NotchChrome.ivory
            font.pixelSize: 11
            font.weight: Font.Medium
            opacity: view.customMinutes < view.module.maximumMinutes ? 1 : 0.35
            Accessible.role: Accessible.Button
            Accessible.name: "More minutes"
            Accessible.onPressAction: view.customMinutes = view.module.stepped(view.customMinutes, 1)
            MouseArea {
                anchors.fill: parent
                anchors.margins: -4
                onClicked: view.customMinutes = view.module.stepped(view.customMinutes, 1)
            }
        }
        Text {
            objectName: "startButton"
            text: "Start"
            color: NotchChrome.ivory
            font.pixelSize: 11
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Button
            Accessible.name: text
            Accessible.onPressAction: view.module.startMinutes(view.customMinutes)
            MouseArea {
                anchors.fill: parent
                anchors.margins: -4
                onClicked: view.module.startMinutes(view.customMinutes)
            }
        }
    }

    Text {
        objectName: "clock"
        visible: view.session.isRunning
        text: view.session.remainingText
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 28
        font.weight: Font.DemiBold
        // Digits of one width, so the clock does not jitter as it counts.
        font.family: "DejaVu Sans Mono"
    }

    Text {
        objectName: "cancelButton"
        visible: view.session.isRunning
        text: "Cancel"
        color: NotchChrome.ivory
        opacity: 0.7
        font.pixelSize: 11
        font.weight: Font.Medium
        Accessible.role: Accessible.Button
        Accessible.name: text
        Accessible.onPressAction: view.session.cancel()
        MouseArea {
            anchors.fill: parent
            anchors.margins: -4
            onClicked: view.session.cancel()
        }
    }
}
