// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QQmlEngine;

namespace ledgewise {

// Makes the project's QML modules (linked in statically) importable by an engine.
void addLedgewiseQmlModules(QQmlEngine &engine);

} // namespace ledgewise
