// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/module_registry.h"

#include "modules/placeholder_modules.h"

#include <QCoreApplication>
#include <QThread>

namespace ledgewise {

ModuleRegistry::ModuleRegistry(std::vector<std::unique_ptr<LedgewiseModule>> modules, QObject *parent)
    : QObject(parent)
{
    for (auto &module : modules) {
        if (!module)
            continue;
        const ModuleID id = module->id();
        m_catalog.try_emplace(id, std::move(module));
    }
}

ModuleRegistry::~ModuleRegistry() = default;

LedgewiseModule *ModuleRegistry::module(ModuleID id) const
{
    const auto found = m_catalog.find(id);
    return found == m_catalog.end() ? nullptr : found->second.get();
}

QList<LedgewiseModule *> ModuleRegistry::modules(NotchSide side, const Preferences &preferences) const
{
    // The modules are QObjects the surfaces' views bind to: asking from another thread is
    // a programming error that must stop a release build too, not only a debug one.
    if (QCoreApplication::instance() && QThread::currentThread() != QCoreApplication::instance()->thread())
        qFatal("ModuleRegistry::modules called off the main thread");
    const QList<ModuleID> &ids = side == NotchSide::left ? preferences.leftModuleIDs : preferences.rightModuleIDs;
    QList<LedgewiseModule *> result;
    result.reserve(ids.size());
    for (ModuleID id : ids) {
        if (LedgewiseModule *instance = module(id))
            result.append(instance);
    }
    return result;
}

QList<LedgewiseModule *> ModuleRegistry::all() const
{
    QList<LedgewiseModule *> result;
    for (ModuleID id : allModuleIDs) {
        if (LedgewiseModule *instance = module(id))
            result.append(instance);
    }
    return result;
}

std::vector<std::unique_ptr<LedgewiseModule>> makePlaceholderModules()
{
    std::vector<std::unique_ptr<LedgewiseModule>> modules;
    modules.push_back(std::make_unique<CalendarModule>());
    modules.push_back(std::make_unique<NowPlayingModule>());
    modules.push_back(std::make_unique<SystemStatusModule>());
    return modules;
}

} // namespace ledgewise
