// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_model.h"
#include "app/command_line.h"
#include "app/screenshot_tour.h"
#include "app/unix_signal_quit.h"
#include "platform/dbus/application_service.h"
#include "platform/x11/repaint_pacing.h"
#include "platform/xdg/instance_lock.h"
#include "platform/xdg/standard_folders.h"
#include "surfaces/notch_controller.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QSGRendererInterface>

#include <cstdio>
#include <malloc.h>
#include <memory>

using namespace ledgewise;

namespace {

QStringList argumentsOf(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}

// The commands for the running Ledgewise (--quit, --toggle, --settings) need no
// display, only the bus.
int commandRunningInstance(int argc, char *argv[], const CommandLine &command)
{
    QCoreApplication app(argc, argv);
    bool answered = false;
    if (command.action == CommandLine::Action::Toggle)
        answered = ApplicationService::callRunningInstance(QStringLiteral("Toggle"), { command.side });
    else if (command.action == CommandLine::Action::Settings)
        answered = ApplicationService::callRunningInstance(QStringLiteral("OpenSettings"));
    else
        answered = ApplicationService::callRunningInstance(QStringLiteral("Quit"));
    if (!answered) {
        std::fputs(notRunningMessage, stderr);
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // A big copy passes through buffers of many megabytes on the clipboard reader's and
    // the history writer's threads. With malloc's own sliding threshold, once one such
    // buffer is freed the next ones come from the heap and stay there after they are
    // freed (50 large copies left 175 MB resident for 112 MB in use); a fixed threshold
    // gives every buffer over 256 KiB back to the system when it is freed, for one
    // mmap and munmap each.
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    // Help, version and the quit command work without a display.
    const CommandLine command = parseCommandLine(argumentsOf(argc, argv));
    if (command.action == CommandLine::Action::PrintAndExit) {
        std::fputs(command.output.toLocal8Bit().constData(), command.exitCode == 0 ? stdout : stderr);
        return command.exitCode;
    }
    if (command.action != CommandLine::Action::Run)
        return commandRunningInstance(argc, argv, command);

    // The surfaces are small and mostly still: the software scene graph draws them at a
    // fraction of the memory a GL context costs.
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // A running countdown repaints the surfaces once a second: paced to cost one wake-up.
    paceRepaints();
    // No widgets: the surfaces and their menu are Qt Quick, and the file chooser is a
    // program of its own.
    QGuiApplication app(argc, argv);
    forgetRepaintPacing();
    QGuiApplication::setApplicationName(QStringLiteral("Ledgewise"));
    QGuiApplication::setOrganizationName(QStringLiteral("Ledgewise"));
    QGuiApplication::setApplicationVersion(QStringLiteral(LEDGEWISE_VERSION));
    // The installed Desktop Entry's name, and the bus name: one id for the desktop to
    // match windows, notifications and the menu entry by.
    QGuiApplication::setDesktopFileName(QStringLiteral("org.ledgewise.Ledgewise"));
    // Closing the settings or onboarding window never ends Ledgewise; only the quit
    // command or a signal does.
    QGuiApplication::setQuitOnLastWindowClosed(false);

    // One Ledgewise per user's data, before any store reads or writes it. The bus hands
    // a second start over to the first; the lock holds even where there is no bus.
    InstanceLock lock(StandardFolders::applicationData());
    const InstanceLock::Outcome locking = lock.tryLock();
    // Where no lock file can be made, no history can be written either: run, and say so.
    if (locking == InstanceLock::Outcome::unavailable)
        std::fprintf(stderr, "Ledgewise cannot make its lock file %s; a second start would not be stopped.\n",
            qPrintable(lock.path()));
    const bool locked = locking != InstanceLock::Outcome::heldByOther;
    ApplicationService service;
    if ((!locked || !service.registerOnSessionBus())
        && ApplicationService::callRunningInstance(QStringLiteral("Reopen"))) {
        std::fputs("Ledgewise is already running.\n", stdout);
        return 0;
    }
    if (!locked) {
        const qint64 holder = lock.holder();
        std::fprintf(stderr,
            "Ledgewise is already running%s and cannot be reached; not starting a second one (lock: %s).\n",
            holder > 0 ? qPrintable(QStringLiteral(" as process %1").arg(holder)) : "", qPrintable(lock.path()));
        return 1;
    }

    UnixSignalQuit signalQuit;
    AppModel model;
    QObject::connect(&service, &ApplicationService::quitRequested, &app, &QCoreApplication::quit);
    QObject::connect(&service, &ApplicationService::reopenRequested, &model, &AppModel::reopen);
    QObject::connect(&service, &ApplicationService::openSettingsRequested, &model, &AppModel::openSettings);
    QObject::connect(&model, &AppModel::settingsRequested, &service, &ApplicationService::announceSettingsRequested);
    QObject::connect(&service, &ApplicationService::toggleRequested, &model, [&model](const QString &raw) {
        const std::optional<NotchSide> side = notchSideFromRaw(raw);
        if (side)
            model.toggleSurface(*side);
    });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &model, &AppModel::saveAll);

    model.start();

    std::unique_ptr<ScreenshotTour> tour;
    if (const QString directory = ScreenshotTour::directoryFromEnvironment(); !directory.isEmpty()) {
        tour = std::make_unique<ScreenshotTour>(directory, model);
        tour->start();
    }
    return app.exec();
}
