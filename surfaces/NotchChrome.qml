// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton
import QtQuick

// The colours every surface and panel draws with. Texts and symbols are ivory at
// fixed opacities over the black fill.
QtObject {
    readonly property color fill: "black"
    readonly property color ivory: Qt.rgba(0.96, 0.95, 0.93, 1)
    readonly property color charcoal: Qt.rgba(0.14, 0.14, 0.14, 1)
}
