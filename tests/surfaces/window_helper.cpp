// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Another application's window, for tests: a plain window at the geometry given that
// prints "pressed X Y" (screen coordinates) for every mouse press it receives.
//   window_helper X Y WIDTH HEIGHT [--grab] [--active]
// --grab   holds an active pointer grab once shown, as an open menu of another
//          application does, so every click goes to this window wherever it lands;
// --active marks the window as the active one on the root window, as a window
//          manager does for the window with keyboard focus.
// Prints "ready" once the window is shown (and grabbed).
#include "platform/x11/xcb_reply.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdio>

namespace {

class Helper : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::darkCyan); }
    void mousePressEvent(QMouseEvent *event) override
    {
        const QPoint global = event->globalPosition().toPoint();
        std::printf("pressed %d %d\n", global.x(), global.y());
        std::fflush(stdout);
    }
};

void markActive(const QWindow &window)
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return;
    const char name[] = "_NET_ACTIVE_WINDOW";
    const ledgewise::XcbReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, false, sizeof name - 1, name), nullptr));
    if (!atom)
        return;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const xcb_window_t id = xcb_window_t(window.winId());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, atom->atom, XCB_ATOM_WINDOW, 32, 1, &id);
    ledgewise::XcbReply<xcb_get_input_focus_reply_t> { xcb_get_input_focus_reply(
        connection, xcb_get_input_focus(connection), nullptr) };
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    if (argc < 5)
        return 2;
    const QStringList options = app.arguments().mid(5);
    Helper window;
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
    window.setTitle(QStringLiteral("window helper"));
    window.setGeometry(QString::fromLatin1(argv[1]).toInt(), QString::fromLatin1(argv[2]).toInt(),
        QString::fromLatin1(argv[3]).toInt(), QString::fromLatin1(argv[4]).toInt());
    window.show();
    if (options.contains(QStringLiteral("--active")))
        markActive(window);
    // A grab needs a viewable window: try until the server grants it.
    QTimer ready;
    ready.setInterval(50);
    QObject::connect(&ready, &QTimer::timeout, &window, [&] {
        if (!window.isExposed())
            return;
        if (options.contains(QStringLiteral("--grab")) && !window.setMouseGrabEnabled(true))
            return;
        ready.stop();
        std::puts("ready");
        std::fflush(stdout);
    });
    ready.start();
    return app.exec();
}
