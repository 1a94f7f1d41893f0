#include "app/screenshot_tour.h"

#include <QDir>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include <cstdio>

namespace ledgewise {

ScreenshotTour::ScreenshotTour(QString directory, QObject *parent)
    : QObject(parent)
    , m_directory(std::move(directory))
{
}

QString ScreenshotTour::directoryFromEnvironment()
{
    return qEnvironmentVariable("LEDGEWISE_SCREENSHOT_DIR");
}

void ScreenshotTour::start()
{
    // Give the windows a moment to be mapped and drawn before the first picture.
    QTimer::singleShot(1000, this, [this] {
        const QString path = capture(QStringLiteral("01-start"));
        if (!path.isEmpty())
            std::printf("Screenshot: %s\n", qPrintable(path));
        else
            std::printf("Could not write a screenshot into %s\n", qPrintable(m_directory));
        std::fflush(stdout);
    });
}

QString ScreenshotTour::capture(const QString &name) const
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen || !QDir().mkpath(m_directory))
        return {};
    const QString path = QDir(m_directory).filePath(name + QStringLiteral(".png"));
    return screen->grabWindow(0).save(path) ? path : QString();
}

} // namespace ledgewise
