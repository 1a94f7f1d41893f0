// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QVariantList>

namespace ledgewise {

// Ledgewise's own name on the session bus. The first instance owns it; a second
// launch finds it taken and hands its request to the first one instead of starting
// twice.
class ApplicationService : public QObject
{
    Q_OBJECT

public:
    static constexpr auto serviceName = "org.ledgewise.Ledgewise";
    static constexpr auto objectPath = "/org/ledgewise/Ledgewise";

    explicit ApplicationService(QObject *parent = nullptr);
    ~ApplicationService() override;

    // Takes the bus name; false when another instance holds it (or there is no bus,
    // in which case the instance just runs alone).
    bool registerOnSessionBus();
    bool isRegistered() const { return m_registered; }

    // Asks the running instance to do something. False when none answers.
    static bool callRunningInstance(const QString &method, const QVariantList &arguments = {});

    // Tells the bus that the settings were asked for (by a second start, --settings or
    // the menu), so scripts and tests can follow it before the window shows.
    void announceSettingsRequested() { emit SettingsRequested(); }

public slots:
    // Called through the bus.
    void Quit() { emit quitRequested(); }
    void Reopen() { emit reopenRequested(); }
    void Toggle(const QString &side) { emit toggleRequested(side); }
    void OpenSettings() { emit openSettingsRequested(); }

signals:
    void quitRequested();
    void reopenRequested();
    void toggleRequested(const QString &side);
    void openSettingsRequested();
    // Relayed to the bus by the adaptor.
    void SettingsRequested();

private:
    bool m_registered = false;
};

} // namespace ledgewise
