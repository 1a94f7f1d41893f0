// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Frames drawn while a surface expands: the window's frames during one animated move,
// against the frames a 60 Hz display would show in that time. Run it on a display.
#include "app/app_model.h"
#include "bench/support/bench_support.h"
#include "surfaces/notch_controller.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickView>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTimer>

using namespace ledgewise;

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication app(argc, argv);
    AppModel model;
    model.start();
    NotchWindowController *surface = model.notchController()->controllers().front().get();

    int frames = 0;
    QObject::connect(surface->window(), &QQuickWindow::frameSwapped, [&frames] { ++frames; });
    QList<int> gaps;
    QElapsedTimer sinceFrame;
    QObject::connect(surface->window(), &QQuickWindow::frameSwapped, [&] {
        if (sinceFrame.isValid())
            gaps.append(int(sinceFrame.restart()));
        else
            sinceFrame.start();
    });

    QTimer::singleShot(500, [&] {
        frames = 0;
        gaps.clear();
        sinceFrame.invalidate();
        QElapsedTimer clock;
        clock.start();
        QObject::connect(surface, &NotchWindowController::moveFinished, &app, [&, clock] {
            const double seconds = clock.elapsed() / 1000.0;
            int longest = 0;
            for (int gap : gaps)
                longest = std::max(longest, gap);
            bench::print("surfaces: frames during one expand",
                QStringLiteral("%1 frames in %2 ms (a 60 Hz display shows %3); longest gap %4 ms")
                    .arg(frames)
                    .arg(clock.elapsed())
                    .arg(int(seconds * 60))
                    .arg(longest));
            QCoreApplication::quit();
        });
        surface->behaviour().toggleExpanded();
    });
    return app.exec();
}
