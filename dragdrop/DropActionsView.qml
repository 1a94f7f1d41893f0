import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// What can be done with a drop: its summary, a row of Copy, Save, Share and Open, and
// AirDrop alone below. It only reports the chosen action.
ColumnLayout {
    id: view
    property string summary
    // Why the last action did nothing (Open refusing a kind of link); empty otherwise.
    property string notice
    // [{ action, title, symbol }] in the order they are offered.
    property var actions: []
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

    Rectangle {
        id: airDrop
        objectName: "dropAction_airDrop"
        readonly property var entry: view.actions.find(e => e.action === "airDrop") || ({ title: "AirDrop", symbol: "dot.radiowaves.left.and.right" })
        Layout.fillWidth: true
        implicitHeight: airDropLabel.implicitHeight + 12
        radius: height / 2
        color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.08)
        Accessible.role: Accessible.Button
        Accessible.name: entry.title
        Accessible.onPressAction: view.actionChosen("airDrop")

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
            onClicked: view.actionChosen("airDrop")
        }
    }
}
