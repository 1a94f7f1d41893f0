// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The one record of user settings, its enumerations and its element types.
// A plain value: copied on assignment, compared field by field. Encoding and the
// strict all-or-nothing decoding live in preferences_codec.h.

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <array>
#include <optional>

namespace ledgewise {

enum class NotchPlacement { left, right, both };
enum class NotchStyle { classic, pill, minimal };
enum class ModuleID { clipboard, downloads, timer, launcher, calendar, nowPlaying, systemStatus };

inline constexpr std::array allNotchPlacements { NotchPlacement::left, NotchPlacement::right, NotchPlacement::both };
inline constexpr std::array allNotchStyles { NotchStyle::classic, NotchStyle::pill, NotchStyle::minimal };
inline constexpr std::array allModuleIDs { ModuleID::clipboard, ModuleID::downloads, ModuleID::timer,
    ModuleID::launcher, ModuleID::calendar, ModuleID::nowPlaying, ModuleID::systemStatus };

// Raw values are the stored text; construction from a raw value is exact and
// case-sensitive, anything else yields no value.
QString rawValue(NotchPlacement placement);
QString rawValue(NotchStyle style);
QString rawValue(ModuleID id);
std::optional<NotchPlacement> notchPlacementFromRaw(const QString &raw);
std::optional<NotchStyle> notchStyleFromRaw(const QString &raw);
std::optional<ModuleID> moduleIDFromRaw(const QString &raw);

// What the user reads.
QString title(NotchPlacement placement);
QString title(NotchStyle style);
QString title(ModuleID id);
// The symbol name of a module, looked up among the bundled icons.
QString systemImage(ModuleID id);

struct LauncherItem {
    enum class Kind { application, file, website };

    QUuid id;
    QString title;
    Kind kind = Kind::website;
    std::optional<QByteArray> bookmarkData; // application and file only
    std::optional<QString> urlString; // website only

    friend bool operator==(const LauncherItem &, const LauncherItem &) = default;
};

QString rawValue(LauncherItem::Kind kind);
std::optional<LauncherItem::Kind> launcherKindFromRaw(const QString &raw);

struct Preferences {
    NotchPlacement placement = NotchPlacement::both;
    bool animateInterface = true;
    bool showOnExternalMonitors = true;
    bool automaticallyHide = false;
    bool launchAtLogin = false;
    NotchStyle style = NotchStyle::pill;
    double width = 268.0;
    double height = 340.0;
    double cornerRadius = 14.0;
    double opacity = 1.0;
    double spacing = 8.0;
    double animationSpeed = 1.0;
    QList<ModuleID> leftModuleIDs = defaultLeftModuleIDs();
    QList<ModuleID> rightModuleIDs = defaultRightModuleIDs();
    bool hasCompletedOnboarding = false;
    double offsetFromNotch = 8.0;
    double offsetFromEdge = 80.0;
    QList<LauncherItem> launcherItems;

    // clipboard, downloads and timer on the left; the launcher on the right. The other
    // catalogued modules are on no side until the user places them.
    static QList<ModuleID> defaultLeftModuleIDs();
    static QList<ModuleID> defaultRightModuleIDs();

    // The shared default record, built once on first use.
    static const Preferences &defaults();

    // Doubles compare exactly; lists element by element.
    friend bool operator==(const Preferences &, const Preferences &) = default;
};

} // namespace ledgewise
