import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// One row of a module's list: an icon, a title over a small label, and optional
// buttons at the trailing edge. A click anywhere but on those buttons is `clicked`.
Rectangle {
    id: row
    property string symbol
    property url thumbnail
    // Clipboard rows frame their icon at 22 x 22; Downloads rows let it take its width.
    property bool framedIcon: true
    property string title
    property string subtitle
    default property alias trailing: trailingButtons.data
    signal clicked()

    implicitHeight: content.implicitHeight + 12
    radius: 8
    color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.06)
    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.onPressAction: row.clicked()

    MouseArea {
        anchors.fill: parent
        onClicked: row.clicked()
    }

    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        anchors.topMargin: 6
        anchors.bottomMargin: 6
        spacing: 8

        Item {
            objectName: "rowIcon"
            Layout.preferredWidth: row.framedIcon ? 22 : symbolImage.width
            Layout.preferredHeight: row.framedIcon ? 22 : symbolImage.height
            Image {
                objectName: "rowThumbnail"
                anchors.fill: parent
                visible: row.thumbnail.toString().length > 0
                source: row.thumbnail
                fillMode: Image.PreserveAspectCrop
                sourceSize: Qt.size(44, 44)
                layer.enabled: visible
                clip: true
            }
            Symbol {
                id: symbolImage
                objectName: "rowSymbol"
                anchors.centerIn: parent
                visible: row.thumbnail.toString().length === 0
                name: row.symbol
                size: 11
                opacity: 0.7
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            Text {
                objectName: "rowTitle"
                Layout.fillWidth: true
                text: row.title
                color: NotchChrome.ivory
                font.pixelSize: 11
                font.weight: Font.Medium
                elide: Text.ElideRight
                maximumLineCount: 1
                textFormat: Text.PlainText
            }
            Text {
                objectName: "rowSubtitle"
                text: row.subtitle
                color: NotchChrome.ivory
                opacity: 0.45
                font.pixelSize: 9
            }
        }

        Row {
            id: trailingButtons
            spacing: 8
        }
    }
}
