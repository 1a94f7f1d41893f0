// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace ledgewise {

// The five things that can be done with a drop, in the order they are offered.
enum class DropAction { copy, save, share, open, airDrop };

inline constexpr std::array allDropActions { DropAction::copy, DropAction::save, DropAction::share, DropAction::open,
    DropAction::airDrop };

QString rawValue(DropAction action);
std::optional<DropAction> dropActionFromRaw(const QString &raw);
QString title(DropAction action);
QString systemImage(DropAction action);

} // namespace ledgewise
