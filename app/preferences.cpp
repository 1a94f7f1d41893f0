// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"

#include <algorithm>

namespace ledgewise {

namespace {

template <typename E> struct EnumCase {
    E value;
    const char *raw;
    const char *title;
};

constexpr EnumCase<NotchPlacement> placementCases[] = {
    { NotchPlacement::left, "left", "Left" },
    { NotchPlacement::right, "right", "Right" },
    { NotchPlacement::both, "both", "Both" },
};

constexpr EnumCase<NotchStyle> styleCases[] = {
    { NotchStyle::classic, "classic", "Classic" },
    { NotchStyle::pill, "pill", "Pill" },
    { NotchStyle::minimal, "minimal", "Minimal" },
};

struct ModuleCase {
    ModuleID value;
    const char *raw;
    const char *title;
    const char *systemImage;
};

constexpr ModuleCase moduleCases[] = {
    { ModuleID::clipboard, "clipboard", "Clipboard", "clipboard" },
    { ModuleID::downloads, "downloads", "Downloads", "arrow.down.circle" },
    { ModuleID::timer, "timer", "Timer", "timer" },
    { ModuleID::launcher, "launcher", "Launcher", "square.grid.2x2" },
    { ModuleID::calendar, "calendar", "Calendar", "calendar" },
    { ModuleID::nowPlaying, "nowPlaying", "Now Playing", "playpause" },
    // One word on purpose: the switcher and the placeholder both show "System".
    { ModuleID::systemStatus, "systemStatus", "System", "chart.bar" },
};

constexpr EnumCase<LauncherItem::Kind> kindCases[] = {
    { LauncherItem::Kind::application, "application", "" },
    { LauncherItem::Kind::file, "file", "" },
    { LauncherItem::Kind::website, "website", "" },
};

template <typename Table, typename E> const auto &caseOf(const Table &table, E value)
{
    return *std::find_if(std::begin(table), std::end(table), [value](const auto &c) { return c.value == value; });
}

template <typename E, typename Table> std::optional<E> fromRaw(const Table &table, const QString &raw)
{
    for (const auto &c : table) {
        if (raw == QLatin1String(c.raw))
            return c.value;
    }
    return std::nullopt;
}

} // namespace

QString rawValue(NotchPlacement placement)
{
    return QString::fromLatin1(caseOf(placementCases, placement).raw);
}
QString rawValue(NotchStyle style)
{
    return QString::fromLatin1(caseOf(styleCases, style).raw);
}
QString rawValue(ModuleID id)
{
    return QString::fromLatin1(caseOf(moduleCases, id).raw);
}
QString rawValue(LauncherItem::Kind kind)
{
    return QString::fromLatin1(caseOf(kindCases, kind).raw);
}

std::optional<NotchPlacement> notchPlacementFromRaw(const QString &raw)
{
    return fromRaw<NotchPlacement>(placementCases, raw);
}
std::optional<NotchStyle> notchStyleFromRaw(const QString &raw)
{
    return fromRaw<NotchStyle>(styleCases, raw);
}
std::optional<ModuleID> moduleIDFromRaw(const QString &raw)
{
    return fromRaw<ModuleID>(moduleCases, raw);
}
std::optional<LauncherItem::Kind> launcherKindFromRaw(const QString &raw)
{
    return fromRaw<LauncherItem::Kind>(kindCases, raw);
}

QString title(NotchPlacement placement)
{
    return QString::fromLatin1(caseOf(placementCases, placement).title);
}
QString title(NotchStyle style)
{
    return QString::fromLatin1(caseOf(styleCases, style).title);
}
QString title(ModuleID id)
{
    return QString::fromLatin1(caseOf(moduleCases, id).title);
}
QString systemImage(ModuleID id)
{
    return QString::fromLatin1(caseOf(moduleCases, id).systemImage);
}

QList<ModuleID> Preferences::defaultLeftModuleIDs()
{
    QList<ModuleID> ids;
    ids << ModuleID::clipboard << ModuleID::downloads << ModuleID::timer;
    return ids;
}

QList<ModuleID> Preferences::defaultRightModuleIDs()
{
    return { ModuleID::launcher };
}

const Preferences &Preferences::defaults()
{
    static const Preferences record;
    return record;
}

} // namespace ledgewise
