// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/screenshot_tour.h"

#include "app/app_model.h"
#include "dragdrop/drop_payload.h"
#include "modules/timer/timer_session.h"
#include "surfaces/notch_controller.h"

#include <QDir>
#include <QGuiApplication>
#include <QMimeData>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include <cstdio>

namespace ledgewise {

namespace {

// Long enough for a move's animation to end and the frame to be drawn.
constexpr int settleMs = 700;

NotchWindowController *leftSurface(AppModel &model)
{
    NotchController *controller = model.notchController();
    if (!controller)
        return nullptr;
    for (const auto &surface : controller->controllers()) {
        if (surface->side() == NotchSide::left)
            return surface.get();
    }
    return controller->controllers().empty() ? nullptr : controller->controllers().front().get();
}

} // namespace

ScreenshotTour::ScreenshotTour(QString directory, AppModel &model, QObject *parent)
    : QObject(parent)
    , m_directory(std::move(directory))
    , m_model(model)
{
    auto surface = [this] { return leftSurface(m_model); };
    m_steps = {
        { QStringLiteral("01-sleeping"), [] {} },
        { QStringLiteral("02-glance"),
            [surface] {
                if (auto *s = surface())
                    s->hoverChanged(true);
            } },
        { QStringLiteral("03-expanded"),
            [surface] {
                if (auto *s = surface())
                    s->behaviour().toggleExpanded();
            } },
        { QStringLiteral("04-drop"),
            [surface] {
                QMimeData data;
                data.setText(QStringLiteral("Notes from the meeting"));
                if (auto *s = surface(); s && DropPayload::from(data))
                    s->dragDidDrop(std::make_shared<const DropPayload>(*DropPayload::from(data)));
            } },
        { QStringLiteral("05-countdown"),
            [this, surface] {
                if (auto *s = surface()) {
                    s->hoverChanged(false);
                    s->behaviour().collapse();
                }
                m_model.timer().start(300);
            } },
    };
}

QString ScreenshotTour::directoryFromEnvironment()
{
    return qEnvironmentVariable("LEDGEWISE_SCREENSHOT_DIR");
}

void ScreenshotTour::start()
{
    QTimer::singleShot(settleMs, this, [this] { runStep(0); });
}

void ScreenshotTour::runStep(int index)
{
    if (index >= m_steps.size()) {
        m_model.timer().cancel();
        std::printf("Screenshots of the tour are in %s\n", qPrintable(QDir(m_directory).absolutePath()));
        std::fflush(stdout);
        return;
    }
    m_steps[index].before();
    QTimer::singleShot(settleMs, this, [this, index] {
        const QString path = capture(m_steps[index].name);
        std::printf("%s\n",
            path.isEmpty() ? qPrintable(QStringLiteral("Could not write a screenshot into ") + m_directory)
                           : qPrintable(QStringLiteral("Screenshot: ") + path));
        std::fflush(stdout);
        runStep(index + 1);
    });
}

QString ScreenshotTour::capture(const QString &name) const
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || !QDir().mkpath(m_directory))
        return {};
    const QString path = QDir(m_directory).absoluteFilePath(name + QStringLiteral(".png"));
    return screen->grabWindow(0).save(path) ? path : QString();
}

} // namespace ledgewise
