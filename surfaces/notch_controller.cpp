// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_controller.h"

#include "app/preferences_store.h"
#include "modules/ledgewise_module.h"
#include "platform/dbus/sleep_monitor.h"
#include "platform/display/screen_snapshot.h"
#include "platform/x11/active_window.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <limits>

namespace ledgewise {

NotchController::NotchController(SurfaceContext *context, QQmlEngine &engine, QObject *parent)
    : QObject(parent)
    , m_context(context)
    , m_engine(engine)
{
    // Screens announce a change in several signals at once; one rebuild follows them all.
    m_screenChange.setSingleShot(true);
    m_screenChange.setInterval(0);
    connect(&m_screenChange, &QTimer::timeout, this, [this] { rebuild(false); });
}

NotchController::~NotchController()
{
    tearDown();
}

void NotchController::listen()
{
    if (m_listening || !m_context)
        return;
    m_listening = true;
    auto *app = qGuiApp;
    connect(app, &QGuiApplication::screenAdded, this, [this](QScreen *screen) {
        watchScreen(screen);
        screensChanged();
    });
    connect(app, &QGuiApplication::screenRemoved, this, &NotchController::screensChanged);
    connect(app, &QGuiApplication::primaryScreenChanged, this, &NotchController::screensChanged);
    for (QScreen *screen : QGuiApplication::screens())
        watchScreen(screen);
    connect(&m_context->preferencesStore(), &PreferencesStore::preferencesDidChange, this,
        &NotchController::preferencesChanged);
    // The glance follows its module live: a copy, a finished download, each tick of a
    // countdown. A countdown's tick is one wake-up that refreshes every surface, and all
    // of them repaint in that same turn of the event loop.
    for (LedgewiseModule *module : m_context->allModules())
        connect(module, &LedgewiseModule::glanceChanged, this, &NotchController::refreshAll);
    m_sleepMonitor = std::make_unique<SleepMonitor>();
    connect(m_sleepMonitor.get(), &SleepMonitor::woke, this, &NotchController::workspaceWoke);
}

void NotchController::watchScreen(QScreen *screen)
{
    connect(screen, &QScreen::geometryChanged, this, &NotchController::screensChanged);
    connect(screen, &QScreen::availableGeometryChanged, this, &NotchController::screensChanged);
}

void NotchController::screensChanged()
{
    m_screenChange.start();
}

QScreen *NotchController::focusedScreen()
{
    if (const auto centre = activeWindowCentre()) {
        if (QScreen *screen = QGuiApplication::screenAt(*centre))
            return screen;
    }
    if (QScreen *screen = QGuiApplication::screenAt(QCursor::pos()))
        return screen;
    return QGuiApplication::primaryScreen();
}

QList<QScreen *> NotchController::chosenScreens(bool showOnExternalMonitors)
{
    QList<QScreen *> chosen;
    QScreen *focused = focusedScreen();
    QScreen *primary = QGuiApplication::primaryScreen();
    for (QScreen *screen : QGuiApplication::screens()) {
        if (screen == focused || screen == primary || showOnExternalMonitors)
            chosen.append(screen);
    }
    return chosen;
}

void NotchController::tearDown()
{
    for (auto &controller : m_controllers)
        controller->close();
    m_controllers.clear();
}

void NotchController::rebuild(bool animateFromCenter)
{
    tearDown();
    if (!m_context)
        return;
    const Preferences preferences = m_context->preferencesStore().current();
    m_lastPlacement = preferences.placement;
    m_lastExternal = preferences.showOnExternalMonitors;

    QList<NotchSide> sides;
    if (preferences.placement != NotchPlacement::right)
        sides.append(NotchSide::left);
    if (preferences.placement != NotchPlacement::left)
        sides.append(NotchSide::right);

    for (QScreen *screen : chosenScreens(preferences.showOnExternalMonitors)) {
        const DisplaySnapshot display = snapshotOf(*screen);
        for (NotchSide side : sides) {
            auto controller = std::make_unique<NotchWindowController>(side, display, m_context, m_engine);
            connect(controller.get(), &NotchWindowController::toggleRequested, this, &NotchController::toggle);
            connect(controller.get(), &NotchWindowController::contextMenuRequested, this,
                &NotchController::contextMenuRequested);
            controller->behaviour().refreshGlance();
            if (animateFromCenter)
                controller->presentFromCenter();
            else
                controller->show();
            m_controllers.push_back(std::move(controller));
        }
    }
    emit rebuilt();
}

void NotchController::preferencesChanged()
{
    if (!m_context)
        return;
    const Preferences preferences = m_context->preferencesStore().current();
    if (m_lastPlacement != preferences.placement || m_lastExternal != preferences.showOnExternalMonitors) {
        rebuild(false);
        return;
    }
    for (auto &controller : m_controllers) {
        QScreen *screen = nullptr;
        for (QScreen *candidate : QGuiApplication::screens()) {
            if (snapshotOf(*candidate).frame == controller->display().frame)
                screen = candidate;
        }
        if (!screen)
            screen = QGuiApplication::screenAt(QCursor::pos());
        if (screen)
            controller->moveToCurrentPresentation(snapshotOf(*screen));
        controller->behaviour().refreshGlance();
    }
}

void NotchController::toggle(NotchSide side)
{
    if (NotchWindowController *controller = preferred(side))
        controller->behaviour().toggleExpanded();
}

NotchWindowController *NotchController::preferred(NotchSide side) const
{
    const int pointerX = QCursor::pos().x();
    NotchWindowController *best = nullptr;
    int bestDistance = std::numeric_limits<int>::max();
    for (const auto &controller : m_controllers) {
        if (controller->side() != side)
            continue;
        const int distance = std::abs(controller->frameInScreen().center().x() - pointerX);
        // Only a strictly nearer surface replaces the earlier one.
        if (distance < bestDistance) {
            best = controller.get();
            bestDistance = distance;
        }
    }
    return best;
}

void NotchController::refreshAll()
{
    for (auto &controller : m_controllers)
        controller->behaviour().refreshGlance();
}

} // namespace ledgewise
