// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
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
            // The picture comes already cropped to its frame and rounded: the surfaces
            // render without a GPU, where masks and shader effects are not available.
            Image {
                objectName: "rowThumbnail"
                anchors.fill: parent
                visible: row.thumbnail.toString().length > 0
                source: row.thumbnail
                fillMode: Image.PreserveAspectCrop
                smooth: true
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
                textFormat: Text.PlainText
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
