// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/ledgewise_module.h"

namespace ledgewise {

// A catalogued module that is not built yet: its panel says so under its title.
class PlaceholderModule : public LedgewiseModule
{
    Q_OBJECT

public:
    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

protected:
    using LedgewiseModule::LedgewiseModule;
};

// The calendar holds no store on this platform: there is no system calendar service
// to keep a handle to, so it is a plain placeholder.
class CalendarModule final : public PlaceholderModule
{
    Q_OBJECT
public:
    explicit CalendarModule(QObject *parent = nullptr)
        : PlaceholderModule(ModuleID::calendar, parent)
    { }
};

class NowPlayingModule final : public PlaceholderModule
{
    Q_OBJECT
public:
    explicit NowPlayingModule(QObject *parent = nullptr)
        : PlaceholderModule(ModuleID::nowPlaying, parent)
    { }
};

class SystemStatusModule final : public PlaceholderModule
{
    Q_OBJECT
public:
    explicit SystemStatusModule(QObject *parent = nullptr)
        : PlaceholderModule(ModuleID::systemStatus, parent)
    { }
};

} // namespace ledgewise
