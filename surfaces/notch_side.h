// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace ledgewise {

// Which side of the notch a surface hangs on.
enum class NotchSide { left, right };
// The four looks of a surface; the surface model decides which one is shown.
enum class NotchPresentation { sleeping, glance, expanded, active };

inline constexpr std::array allNotchSides { NotchSide::left, NotchSide::right };
inline constexpr std::array allNotchPresentations { NotchPresentation::sleeping, NotchPresentation::glance,
    NotchPresentation::expanded, NotchPresentation::active };

QString rawValue(NotchSide side);
QString rawValue(NotchPresentation presentation);
std::optional<NotchSide> notchSideFromRaw(const QString &raw);
std::optional<NotchPresentation> notchPresentationFromRaw(const QString &raw);

} // namespace ledgewise
