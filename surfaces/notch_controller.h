// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "surfaces/notch_window_controller.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <optional>
#include <vector>

class QQmlEngine;
class QScreen;

namespace ledgewise {

class SleepMonitor;

// Decides which surfaces exist: one per side of the placement on each chosen display.
// Rebuilds them when the displays, the placement or the external-monitor switch change
// or the machine wakes; reshapes them in place for any other preference; routes the
// toggle shortcuts; refreshes their glance whenever a module's glance changes (each tick
// of a running countdown among them). It has no timer of its own for that: the
// countdown's one tick is the program's only beat.
class NotchController : public QObject
{
    Q_OBJECT

public:
    NotchController(SurfaceContext *context, QQmlEngine &engine, QObject *parent = nullptr);
    ~NotchController() override;

    void listen();
    void rebuild(bool animateFromCenter);
    void toggle(NotchSide side);
    void refreshAll();
    // The machine woke up.
    void workspaceWoke() { rebuild(false); }

    const std::vector<std::unique_ptr<NotchWindowController>> &controllers() const { return m_controllers; }

    // The screen with keyboard focus: the one holding the middle of the active window,
    // else the one under the pointer, else the primary one.
    static QScreen *focusedScreen();
    // The screens that get surfaces: the focused one, the primary one, and every other
    // one when external monitors are on.
    static QList<QScreen *> chosenScreens(bool showOnExternalMonitors);

signals:
    void rebuilt();
    void contextMenuRequested(QPoint globalPosition);

private:
    void tearDown();
    void preferencesChanged();
    void screensChanged();
    void watchScreen(QScreen *screen);
    NotchWindowController *preferred(NotchSide side) const;

    QPointer<SurfaceContext> m_context;
    QQmlEngine &m_engine;
    std::vector<std::unique_ptr<NotchWindowController>> m_controllers;
    QTimer m_screenChange;
    std::unique_ptr<SleepMonitor> m_sleepMonitor;
    std::optional<NotchPlacement> m_lastPlacement;
    std::optional<bool> m_lastExternal;
    bool m_listening = false;
};

} // namespace ledgewise
