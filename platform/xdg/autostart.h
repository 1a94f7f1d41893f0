// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ledgewise {

// Ledgewise as an item the desktop starts at login: register, unregister, status.
class LoginItem
{
public:
    virtual ~LoginItem() = default;
    virtual bool isEnabled() const = 0;
    // Each false when the desktop's record could not be changed.
    virtual bool enable() = 0;
    virtual bool disable() = 0;
};

// XDG Autostart: a Desktop Entry "org.ledgewise.Ledgewise.desktop" in the user's autostart folder
// ($XDG_CONFIG_HOME/autostart) that starts the program this process runs.
class XdgAutostart final : public LoginItem
{
public:
    // The user's folder and this process's own program, unless given.
    explicit XdgAutostart(QString folder = defaultFolder(), QString program = QString());

    static QString defaultFolder();
    QString path() const;
    // Where versions before the application id wrote it ("ledgewise.desktop"): read
    // while no entry of the new name exists, and replaced or removed by any change.
    QString legacyPath() const;

    // Present and not Hidden=true.
    bool isEnabled() const override;
    // Writes the entry whole or not at all (a reader never sees half of it).
    bool enable() override;
    // Removes the entry; true when it is gone.
    bool disable() override;

private:
    QString m_folder;
    QString m_program;
};

} // namespace ledgewise
