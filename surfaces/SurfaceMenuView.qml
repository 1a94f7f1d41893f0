// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Ledgewise.Surfaces

// The surfaces' menu: its commands one a row, a thin line between groups. The arrow
// keys move through the commands, Return or Space runs the one shown, Escape closes.
Rectangle {
    id: view
    required property QtObject menu
    // The row shown as chosen, by the pointer or the keys; -1: none yet.
    property int current: -1

    // Each opening starts with nothing chosen and the keyboard in the menu.
    function reset() {
        current = -1
        forceActiveFocus()
    }
    function isCommand(index) {
        return index >= 0 && index < menu.texts.length && menu.texts[index] !== ""
    }
    // The next command from `index` on in `step`'s direction, round the ends.
    function nextCommand(index, step) {
        const count = menu.texts.length
        let next = index
        for (let tried = 0; tried < count; ++tried) {
            next = next < 0 ? (step > 0 ? 0 : count - 1) : (next + step + count) % count
            if (isCommand(next))
                return next
        }
        return -1
    }
    function choose(index) {
        current = index
        if (index >= 0)
            rows.itemAt(index).forceActiveFocus()
    }
    function handleKey(event) {
        if (event.key === Qt.Key_Down || event.key === Qt.Key_Up) {
            choose(nextCommand(current, event.key === Qt.Key_Down ? 1 : -1))
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_Space) {
            menu.trigger(current)
        } else if (event.key === Qt.Key_Escape) {
            menu.close()
        } else {
            return
        }
        event.accepted = true
    }

    width: Math.max(180, column.implicitWidth + 2)
    height: column.implicitHeight + 10
    color: NotchChrome.fill
    border.width: 1
    border.color: Qt.rgba(NotchChrome.ivory.r, NotchChrome.ivory.g, NotchChrome.ivory.b, 0.14)
    focus: true
    Keys.onPressed: event => view.handleKey(event)

    Accessible.role: Accessible.PopupMenu
    Accessible.name: "Ledgewise"

    Column {
        id: column
        x: 1
        y: 5
        width: parent.width - 2

        Repeater {
            id: rows
            model: view.menu.texts
            delegate: Item {
                id: row
                required property int index
                required property string modelData
                readonly property bool separator: modelData === ""

                width: column.width
                implicitWidth: separator ? 0 : label.implicitWidth + 40
                height: separator ? 9 : 26
                Keys.onPressed: event => view.handleKey(event)

                Accessible.role: separator ? Accessible.Separator : Accessible.MenuItem
                Accessible.name: modelData
                Accessible.onPressAction: view.menu.trigger(row.index)

                Rectangle {
                    visible: row.separator
                    anchors.centerIn: parent
                    width: parent.width - 16
                    height: 1
                    color: NotchChrome.ivory
                    opacity: 0.14
                }
                Rectangle {
                    objectName: "menuHighlight"
                    visible: !row.separator && view.current === row.index
                    anchors.fill: parent
                    anchors.leftMargin: 4
                    anchors.rightMargin: 4
                    radius: 4
                    color: NotchChrome.ivory
                    opacity: 0.14
                }
                Text {
                    id: label
                    visible: !row.separator
                    anchors.verticalCenter: parent.verticalCenter
                    x: 20
                    text: row.modelData
                    textFormat: Text.PlainText
                    color: NotchChrome.ivory
                    font.pixelSize: 13
                    Accessible.ignored: true
                }
                MouseArea {
                    anchors.fill: parent
                    enabled: !row.separator
                    hoverEnabled: true
                    onContainsMouseChanged: {
                        if (containsMouse)
                            view.choose(row.index)
                        else if (view.current === row.index)
                            view.current = -1
                    }
                    onClicked: view.menu.trigger(row.index)
                }
            }
        }
    }
}
