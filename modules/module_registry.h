// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "modules/ledgewise_module.h"
#include "surfaces/notch_side.h"

#include <QList>
#include <QObject>

#include <map>
#include <memory>
#include <vector>

namespace ledgewise {

// The catalogue: the one live instance of each module, by identity. Built once from
// the instances the application made, never changed afterwards.
class ModuleRegistry : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The registry is created by the application")

public:
    // Takes ownership of the modules; a second module with an identity already
    // catalogued is dropped (one instance per identity).
    explicit ModuleRegistry(std::vector<std::unique_ptr<LedgewiseModule>> modules, QObject *parent = nullptr);
    ~ModuleRegistry() override;

    // The catalogue's instance for an identity, or nullptr when it has none.
    LedgewiseModule *module(ModuleID id) const;

    // The modules a side hosts, in the preferences' order; an identity listed twice
    // yields its module twice, an identity without a module is skipped.
    QList<LedgewiseModule *> modules(NotchSide side, const Preferences &preferences) const;

    // Catalogue order (the order of the identities), for settings lists.
    QList<LedgewiseModule *> all() const;

private:
    std::map<ModuleID, std::unique_ptr<LedgewiseModule>> m_catalog;
};

// The three placeholders; the working modules are added by whoever owns their stores.
std::vector<std::unique_ptr<LedgewiseModule>> makePlaceholderModules();

} // namespace ledgewise
