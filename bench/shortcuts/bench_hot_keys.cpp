// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The toggle shortcuts, measured on the current display (run it on Xvfb:
// tests/support/isolated.sh --display ...):
//  - start-up: from launching the program to its first surface mapped, with Alt+Space
//    already held by it (another client's grab of it is refused), median of 5 starts;
//  - key release to the surface's first animation frame, over 50 presses of Alt+Space
//    that open and close the left surface in turn: from the moment the release is sent
//    (xdotool's start included, so an upper bound) and from the moment Ledgewise has
//    handed it to the toggle (so the drawing alone).
#include "app/app_model.h"
#include "bench/support/bench_support.h"
#include "platform/x11/xcb_reply.h"
#include "shortcuts/application_shortcuts.h"
#include "shortcuts/hot_key_center.h"
#include "surfaces/notch_controller.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QProcess>
#include <QQuickView>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QThread>
#include <QTimer>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdlib>
#include <memory>

using namespace ledgewise;

namespace {

constexpr int presses = 50;
constexpr int starts = 5;

// Whether another client holds Alt+Space: a grab of it by this one is refused.
bool altSpaceHeldElsewhere()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return false;
    }
    xcb_key_symbols_t *symbols = xcb_key_symbols_alloc(connection);
    xcb_keycode_t *keycodes = xcb_key_symbols_get_keycode(symbols, 0x20);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const XcbReply<xcb_generic_error_t> error { keycodes ? xcb_request_check(connection,
                                                    xcb_grab_key_checked(connection, 0, root, XCB_MOD_MASK_1,
                                                        keycodes[0], XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC))
                                                         : nullptr };
    const bool held = error && error->error_code == XCB_ACCESS;
    std::free(keycodes);
    xcb_key_symbols_free(symbols);
    xcb_disconnect(connection);
    return held;
}

void measureStartUp()
{
    QList<double> samples;
    int held = 0;
    for (int i = 0; i < starts; ++i) {
        QProcess ledgewise;
        ledgewise.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QElapsedTimer clock;
        clock.start();
        ledgewise.start(QStringLiteral(LEDGEWISE_BINARY), {});
        if (!ledgewise.waitForStarted(10000))
            return bench::print("shortcuts: start-up", QStringLiteral("could not start %1").arg(LEDGEWISE_BINARY));
        while (bench::xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                                  QStringLiteral("Ledgewise left surface") })
                   .isEmpty()
            && clock.elapsed() < 20000)
            QThread::msleep(5);
        samples.append(double(clock.elapsed()));
        held += altSpaceHeldElsewhere() ? 1 : 0;
        ledgewise.terminate();
        ledgewise.waitForFinished(10000);
    }
    const bench::Stats stats = bench::statsOf(samples);
    bench::print("shortcuts: start to first surface, keys grabbed",
        QStringLiteral("median %1 ms, worst %2 ms over %3 starts (polled every ~5 ms); "
                       "Alt+Space held by Ledgewise at %4 of them")
            .arg(stats.median)
            .arg(stats.worst)
            .arg(starts)
            .arg(held));
}

// Presses Alt+Space `presses` times in the running model and times each release.
class ReleaseToFrame : public QObject
{
public:
    explicit ReleaseToFrame(AppModel &model)
        : m_surface(model.notchController()->controllers().front().get())
        , m_releases(model.hotKeys()->events(ApplicationShortcuts::toggleLeft(), GlobalShortcuts::EventType::keyUp))
    {
        connect(m_releases.get(), &GlobalShortcuts::HotKeyEvents::keyUp, this, [this] { m_received.start(); });
        connect(m_surface->window(), &QQuickWindow::frameSwapped, this, [this] {
            if (!m_received.isValid())
                return;
            m_fromSent.append(double(m_sent.nsecsElapsed()) / 1e6);
            m_fromReceived.append(double(m_received.nsecsElapsed()) / 1e6);
            m_received.invalidate();
        });
        connect(m_surface, &NotchWindowController::moveFinished, this,
            [this] { QTimer::singleShot(100, this, &ReleaseToFrame::press); });
    }

    void press()
    {
        if (m_fromSent.size() == presses || m_pressed == presses + 5) {
            const bench::Stats sent = bench::statsOf(m_fromSent);
            const bench::Stats received = bench::statsOf(m_fromReceived);
            bench::print("shortcuts: key release sent to first frame",
                QStringLiteral("median %1 ms, worst %2 ms over %3 presses (xdotool's start included)")
                    .arg(sent.median, 0, 'f', 1)
                    .arg(sent.worst, 0, 'f', 1)
                    .arg(m_fromSent.size()));
            bench::print("shortcuts: release handled to first frame",
                QStringLiteral("median %1 ms, worst %2 ms")
                    .arg(received.median, 0, 'f', 1)
                    .arg(received.worst, 0, 'f', 1));
            QCoreApplication::quit();
            return;
        }
        ++m_pressed;
        bench::xdotool({ QStringLiteral("keydown"), QStringLiteral("alt+space") });
        m_sent.start();
        m_release.start(QStringLiteral("xdotool"), { QStringLiteral("keyup"), QStringLiteral("alt+space") });
    }

private:
    NotchWindowController *m_surface;
    std::unique_ptr<GlobalShortcuts::HotKeyEvents> m_releases;
    QProcess m_release;
    QElapsedTimer m_sent;
    QElapsedTimer m_received;
    QList<double> m_fromSent;
    QList<double> m_fromReceived;
    int m_pressed = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication app(argc, argv);
    measureStartUp();

    AppModel model;
    model.start();
    // The pointer away from the surfaces, so that no hover widens them meanwhile.
    bench::xdotool({ QStringLiteral("mousemove"), QStringLiteral("756"), QStringLiteral("600") });
    ReleaseToFrame bench(model);
    QTimer::singleShot(500, &bench, &ReleaseToFrame::press);
    return app.exec();
}
