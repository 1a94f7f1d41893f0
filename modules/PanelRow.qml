import QtQuick
import QtQuick.Layouts
import Ledgewise.Surfaces

// One row of a module's list: an icon, a title over an optional small label, and
// optional buttons at the trailing edge. A click anywhere but on those buttons is
// `clicked`.
Rectangle {
    id: row
    property string symbol
    property url thumbnail
    // The frame the icon sits in; 0 lets the symbol take its natural size. Clipboard
    // rows frame it at 22 x 22, launcher rows in a column 16 wide, Downloads rows not.
    property real iconWidth: 22
    property real iconHeight: 22
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
            Layout.preferredWidth: row.iconWidth > 0 ? row.iconWidth : symbolImage.width
            Layout.preferredHeight: row.iconHeight > 0 ? row.iconHeight : symbolImage.height
            // The picture fills its frame (cropped, keeping its aspect ratio) inside a
            // rounded rectangle of corner radius 4. Painted on a canvas: the surfaces
            // render without a GPU, where masks and shader effects are not available.
            Canvas {
                id: thumbnailCanvas
                objectName: "rowThumbnail"
                anchors.fill: parent
                visible: row.thumbnail.toString().length > 0
                // True once the picture is painted.
                property bool painted: false

                // Decoded small, whatever the size of the picture on disk.
                Image {
                    id: picture
                    visible: false
                    source: row.thumbnail
                    sourceSize: Qt.size(44, 44)
                    fillMode: Image.PreserveAspectCrop
                    onStatusChanged: thumbnailCanvas.requestPaint()
                }

                onWidthChanged: requestPaint()
                onHeightChanged: requestPaint()
                onPaint: {
                    const context = getContext("2d")
                    context.reset()
                    painted = false
                    if (picture.status !== Image.Ready || width <= 0 || height <= 0)
                        return
                    const scale = Math.max(width / picture.implicitWidth, height / picture.implicitHeight)
                    const sourceWidth = width / scale
                    const sourceHeight = height / scale
                    context.beginPath()
                    context.roundedRect(0, 0, width, height, 4, 4)
                    context.clip()
                    context.drawImage(picture, (picture.implicitWidth - sourceWidth) / 2,
                                      (picture.implicitHeight - sourceHeight) / 2, sourceWidth, sourceHeight,
                                      0, 0, width, height)
                    painted = true
                }
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
                // Rows with a title only (the launcher's) keep no blank line under it.
                visible: row.subtitle.length > 0
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
