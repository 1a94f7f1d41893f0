// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// What can be done with a drop: its summary, a row of Copy, Save, Share and Open, and
// Send to Device alone below. It only reports the chosen action.
ColumnLayout {
    id: view
    property string summary
    // Why the last action did nothing (Open refusing a kind of link); empty otherwise.
    property string notice
    // [{ action, title, symbol }] in the order they are offered.
    property var actions: []
    // The paired phones (KdeConnectDevices: available, statusText); null without one.
    property QtObject devices: null
    signal actionChosen(string action)

    spacing: 10

    Text {
        objectName: "dropSummary"
        Layout.fillWidth: true
        text: view.summary
        // What another application handed over is shown as it is, never as markup.
        textFormat: Text.PlainText
        // Read out whole, as dropped, even where the view elides it.
        Accessible.role: Accessible.StaticText
        Accessible.name: text
        color: NotchChrome.ivory
        font.pixelSize: 11
        font.weight: Font.Medium
        maximumLineCount: 2
        wrapMode: Text.Wrap
        elide: Text.ElideRight
    }

    Text {
        objectName: "dropNotice"
        Layout.fillWidth: true
        visible: view.notice.length > 0
        text: view.notice
        textFormat: Text.PlainText
        color: NotchChrome.ivory
        opacity: 0.7
        font.pixelSize: 10
        wrapMode: Text.Wrap
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    RowLayout {
        objectName: "dropActionRow"
        Layout.fillWidth: true
        spacing: 6
        Repeater {
            model: view.actions.filter(entry => entry.action !== "airDrop")
            delegate: Rectangle {
                id: button
                required property var modelData
                objectName: "dropAction_" + modelData.action
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                implicitHeight: column.implicitHeight + 16
                radius: 8
                color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
                Accessible.role: Accessible.Button
                Accessible.name: modelData.title
                Accessible.onPressAction: view.actionChosen(modelData.action)

                Column {
                    id: column
                    anchors.centerIn: parent
                    spacing: 4
                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        name: button.modelData.symbol
                        size: 12
                    }
                    Text {
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: button.modelData.title
                        textFormat: Text.PlainText
                        color: NotchChrome.ivory
                        font.pixelSize: 9
                        font.weight: Font.Medium
                    }
                }
                MouseArea {
                    anchors.fill: parent
                    onClicked: view.actionChosen(button.modelData.action)
                }
            }
        }
    }

    // Send to Device, alone below the row: usable only while a paired phone is
    // reachable; otherwise it is dimmed, does nothing, and says why on hover and to a
    // screen reader.
    Item {
        id: sendRow
        readonly property bool ready: view.devices !== null && view.devices.available
        readonly property string status: view.devices !== null ? view.devices.statusText : ""
        Layout.fillWidth: true
        implicitHeight: airDrop.implicitHeight

        Rectangle {
            id: airDrop
            objectName: "dropAction_airDrop"
            readonly property var entry: view.actions.find(e => e.action === "airDrop") || ({ title: "Send to Device", symbol: "dot.radiowaves.left.and.right" })
            anchors.fill: parent
            enabled: sendRow.ready
            opacity: enabled ? 1 : 0.45
            implicitHeight: airDropLabel.implicitHeight + 12
            radius: height / 2
            color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
            Accessible.role: Accessible.Button
            Accessible.name: entry.title
            // Qt Quick tells a screen reader nothing of a disabled item, so the
            // description says why it cannot send.
            Accessible.description: sendRow.status
            Accessible.onPressAction: if (sendRow.ready) view.actionChosen("airDrop")

            Row {
                id: airDropLabel
                anchors.centerIn: parent
                spacing: 6
                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: airDrop.entry.symbol
                    size: 11
                }
                Text {
                    anchors.verticalCenter: parent.verticalCenter
                    text: airDrop.entry.title
                    textFormat: Text.PlainText
                    color: NotchChrome.ivory
                    font.pixelSize: 11
                    font.weight: Font.Medium
                }
            }
            MouseArea {
                anchors.fill: parent
                onClicked: if (sendRow.ready) view.actionChosen("airDrop")
            }
        }

        // A disabled button hears no hover, so the tooltip follows the pointer here.
        property bool tooltipShown: false
        MouseArea {
            id: sendHover
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.NoButton
            onContainsMouseChanged: {
                sendRow.tooltipShown = false;
                if (containsMouse)
                    tooltipDelay.restart();
                else
                    tooltipDelay.stop();
            }
        }
        Timer {
            id: tooltipDelay
            interval: 600
            onTriggered: sendRow.tooltipShown = true
        }
        Rectangle {
            objectName: "sendToDeviceTooltip"
            visible: sendRow.tooltipShown && sendRow.status.length > 0
            anchors.bottom: parent.top
            anchors.bottomMargin: 4
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, tooltipText.width + 16)
            height: tooltipText.implicitHeight + 10
            radius: 6
            color: NotchChrome.ivory
            z: 1
            Text {
                id: tooltipText
                objectName: "sendToDeviceTooltipText"
                anchors.centerIn: parent
                // Measured unwrapped: a wrapping text's own implicit width follows its
                // width, which would make the binding chase itself.
                width: Math.min(Math.ceil(tooltipMetrics.advanceWidth), sendRow.width - 16)
                text: sendRow.status
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                color: "black"
                font.pixelSize: 10
            }
            TextMetrics {
                id: tooltipMetrics
                font: tooltipText.font
                text: sendRow.status
            }
        }
    }
}
