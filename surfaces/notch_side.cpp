// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_side.h"

namespace ledgewise {

QString rawValue(NotchSide side)
{
    return side == NotchSide::left ? QStringLiteral("left") : QStringLiteral("right");
}

QString rawValue(NotchPresentation presentation)
{
    switch (presentation) {
    case NotchPresentation::sleeping:
        return QStringLiteral("sleeping");
    case NotchPresentation::glance:
        return QStringLiteral("glance");
    case NotchPresentation::expanded:
        return QStringLiteral("expanded");
    case NotchPresentation::active:
        return QStringLiteral("active");
    }
    return {};
}

std::optional<NotchSide> notchSideFromRaw(const QString &raw)
{
    for (NotchSide side : allNotchSides) {
        if (rawValue(side) == raw)
            return side;
    }
    return std::nullopt;
}

std::optional<NotchPresentation> notchPresentationFromRaw(const QString &raw)
{
    for (NotchPresentation presentation : allNotchPresentations) {
        if (rawValue(presentation) == raw)
            return presentation;
    }
    return std::nullopt;
}

} // namespace ledgewise
