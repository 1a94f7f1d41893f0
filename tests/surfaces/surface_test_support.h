// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the surface window tests share: an application stand-in and xdotool helpers.

#include "app/preferences_store.h"
#include "dragdrop/drop_payload.h"
#include "dragdrop/drop_saves.h"
#include "modules/module_registry.h"
#include "modules/timer/timer_module.h"
#include "platform/x11/xcb_reply.h"
#include "surfaces/surface_context.h"
#include "tests/support/fake_key_value_store.h"
#include "tests/support/x11_tools.h"

#include "app/qml_modules.h"
#include "surfaces/notch_controller.h"

#include <QDir>
#include <QGuiApplication>
#include <QPixmap>
#include <QProcess>
#include <QQmlEngine>
#include <QRect>
#include <QScreen>

#include <xcb/xcb.h>

namespace ledgewise::testing {

// The working timer (its session never started here) and the placeholders.
inline std::vector<std::unique_ptr<LedgewiseModule>> testModules(TimerSession &timer)
{
    std::vector<std::unique_ptr<LedgewiseModule>> modules = makePlaceholderModules();
    modules.push_back(std::make_unique<TimerModule>(timer));
    return modules;
}

class TestContext final : public SurfaceContext
{
public:
    TestContext()
        : store(settings)
        , timer(nullptr, nullptr)
        , registry(testModules(timer))
    { }

    PreferencesStore &preferencesStore() override { return store; }
    QList<LedgewiseModule *> modulesOf(NotchSide side) override { return registry.modules(side, store.current()); }
    QList<LedgewiseModule *> allModules() override { return registry.all(); }
    void performDropAction(DropAction action, const DropPayload &payload) override
    {
        performed << rawValue(action);
        // As the application does, when a test gives the surfaces a saves model.
        if (action == DropAction::save && saves)
            saves->save(payload);
    }
    DropSaves *dropSaves() override { return saves; }
    void openSettings() override { }
    void checkForUpdates() override { }
    void quit() override { }

    FakeKeyValueStore settings;
    PreferencesStore store;
    TimerSession timer;
    ModuleRegistry registry;
    QStringList performed;
    DropSaves *saves = nullptr;
};

// The window's geometry as the X server has it, found by its name like any tool would.
inline QRect xGeometry(const QString &name)
{
    const QString id
        = xdotool({ QStringLiteral("search"), QStringLiteral("--name"), name }).section(QLatin1Char('\n'), 0, 0);
    if (id.isEmpty())
        return {};
    const QString shell = xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), id });
    QRect rect;
    for (const QString &line : shell.split(QLatin1Char('\n'))) {
        const QString key = line.section(QLatin1Char('='), 0, 0);
        const int value = line.section(QLatin1Char('='), 1).toInt();
        if (key == QLatin1String("X"))
            rect.moveLeft(value);
        if (key == QLatin1String("Y"))
            rect.moveTop(value);
        if (key == QLatin1String("WIDTH"))
            rect.setWidth(value);
        if (key == QLatin1String("HEIGHT"))
            rect.setHeight(value);
    }
    return rect;
}

inline void pointerTo(const QPoint &point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) });
}

inline void clickAt(const QPoint &point)
{
    pointerTo(point);
    xdotool({ QStringLiteral("click"), QStringLiteral("1") });
}

// Plays the compositing manager's part on the display for as long as it lives: it owns
// the _NET_WM_CM_S0 selection from a client of its own, as a compositor does.
class CompositorStandIn
{
public:
    CompositorStandIn()
        : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection))
            return;
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        const xcb_window_t owner = xcb_generate_id(m_connection);
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, owner, screen->root, 0, 0, 1, 1, 0,
            XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const char name[] = "_NET_WM_CM_S0";
        const XcbReply<xcb_intern_atom_reply_t> atom(
            xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, false, sizeof name - 1, name), nullptr));
        if (atom)
            xcb_set_selection_owner(m_connection, owner, atom->atom, XCB_CURRENT_TIME);
        roundTrip();
    }
    ~CompositorStandIn() { xcb_disconnect(m_connection); }
    CompositorStandIn(const CompositorStandIn &) = delete;
    CompositorStandIn &operator=(const CompositorStandIn &) = delete;

private:
    void roundTrip()
    {
        XcbReply<xcb_get_input_focus_reply_t> { xcb_get_input_focus_reply(
            m_connection, xcb_get_input_focus(m_connection), nullptr) };
    }

    xcb_connection_t *m_connection;
};

// Another application's window (tests/surfaces/window_helper.cpp), alive while this is.
class HelperWindow
{
public:
    explicit HelperWindow(const QRect &geometry, const QStringList &options = {})
    {
        m_process.start(qEnvironmentVariable("WINDOW_HELPER"),
            QStringList { QString::number(geometry.x()), QString::number(geometry.y()),
                QString::number(geometry.width()), QString::number(geometry.height()) }
                + options);
        m_ready = m_process.waitForReadyRead(10000) && m_process.readLine().trimmed() == "ready";
    }
    ~HelperWindow()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    bool isReady() const { return m_ready; }
    // Every press the window received so far, as "X Y" in screen coordinates.
    QStringList presses()
    {
        while (m_process.canReadLine() || m_process.waitForReadyRead(0)) {
            const QByteArray line = m_process.readLine().trimmed();
            if (line.startsWith("pressed "))
                m_presses << QString::fromLatin1(line.mid(8));
            if (!m_process.canReadLine())
                break;
        }
        return m_presses;
    }

private:
    QProcess m_process;
    QStringList m_presses;
    bool m_ready = false;
};

inline const QString left = QStringLiteral("Ledgewise left surface");
inline const QString right = QStringLiteral("Ledgewise right surface");

// A notch controller over the stand-in application, listening as the real one does.
struct SurfaceFixture {
    SurfaceFixture()
        : context(std::make_unique<TestContext>())
        , engine(std::make_unique<QQmlEngine>())
    {
        addLedgewiseQmlModules(*engine);
        controller = std::make_unique<NotchController>(context.get(), *engine);
        controller->listen();
    }

    NotchWindowController *surface(NotchSide side) const
    {
        for (const auto &surface : controller->controllers()) {
            if (surface->side() == side)
                return surface.get();
        }
        return nullptr;
    }

    std::unique_ptr<TestContext> context;
    std::unique_ptr<QQmlEngine> engine;
    std::unique_ptr<NotchController> controller;
};

// Kept beside the build as test artefacts (LEDGEWISE_ARTEFACTS).
inline void screenshot(const QString &name)
{
    const QString folder = qEnvironmentVariable("LEDGEWISE_ARTEFACTS");
    if (folder.isEmpty() || !QDir().mkpath(folder))
        return;
    // The whole desktop, every display side by side.
    QScreen *primary = QGuiApplication::primaryScreen();
    const QRect desktop = primary->virtualGeometry();
    primary->grabWindow(0, desktop.x(), desktop.y(), desktop.width(), desktop.height())
        .save(QDir(folder).filePath(QStringLiteral("surfaces-%1.png").arg(name)));
}

} // namespace ledgewise::testing
