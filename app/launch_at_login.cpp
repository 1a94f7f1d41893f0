// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/launch_at_login.h"

#include "app/preferences_store.h"
#include "platform/xdg/autostart.h"

namespace ledgewise::LaunchAtLogin {

bool setEnabled(LoginItem &item, bool wanted)
{
    if (wanted)
        return item.enable();
    if (!item.isEnabled())
        return true;
    return item.disable();
}

Follower::Follower(PreferencesStore &prefs, std::unique_ptr<LoginItem> item, QObject *parent)
    : QObject(parent)
    , m_prefs(prefs)
    , m_item(std::move(item))
    , m_applied(prefs.current().launchAtLogin)
{
    connect(&m_prefs, &PreferencesStore::currentChanged, this, &Follower::apply);
}

Follower::~Follower() = default;

void Follower::apply()
{
    const bool wanted = m_prefs.current().launchAtLogin;
    if (wanted == m_applied)
        return;
    m_applied = wanted;
    if (setEnabled(*m_item, wanted))
        return;
    // The change did not take: the preference goes back to what the desktop will do.
    // Writing it calls this again, which then finds nothing to do.
    m_applied = m_item->isEnabled();
    if (m_applied != wanted)
        m_prefs.update([this](Preferences &preferences) { preferences.launchAtLogin = m_applied; });
}

} // namespace ledgewise::LaunchAtLogin
