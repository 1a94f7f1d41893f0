// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

namespace ledgewise {

class LoginItem;
class PreferencesStore;

namespace LaunchAtLogin {

// Asks for Ledgewise to start at login, or not; true when that is how it ends up.
// Turning it off when it is not on touches nothing. Why a change failed is not kept.
bool setEnabled(LoginItem &item, bool wanted);

// The launch-at-login preference drives the login item: each change of it is applied,
// and a change that cannot be applied is taken back, so the preference reads what
// the desktop will do.
class Follower : public QObject
{
    Q_OBJECT

public:
    Follower(PreferencesStore &prefs, std::unique_ptr<LoginItem> item, QObject *parent = nullptr);
    ~Follower() override;

private:
    void apply();

    PreferencesStore &m_prefs;
    std::unique_ptr<LoginItem> m_item;
    // What was last asked of the login item (or found there after a failure). The
    // stored preference at start is taken as applied: a user who removed the entry
    // by hand is not overruled at every start.
    bool m_applied = false;
};

} // namespace LaunchAtLogin

} // namespace ledgewise
