// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Ledgewise.Surfaces

// A bundled symbol, looked up by its symbol name ("timer", "doc.on.doc"...).
SymbolArt {
    property real size: 12

    width: size
    height: size
    Accessible.ignored: true
}
