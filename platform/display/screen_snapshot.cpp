// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/display/screen_snapshot.h"

#include <QGuiApplication>
#include <QScreen>

namespace ledgewise {

namespace {

ScreenGeometry geometryOf(const QScreen &screen)
{
    return { screen.geometry(), screen.availableGeometry() };
}

// Detection reads sysfs and walks the device tree, and its answer does not change
// while the machine runs, so it is done once.
const std::optional<NotchSize> &detectedNotchPixels()
{
    static const std::optional<NotchSize> notch = NotchDetector().detectPixels();
    return notch;
}

std::optional<NotchSize> notchOf(const QScreen &screen)
{
    const bool primary = &screen == QGuiApplication::primaryScreen();
    if (qEnvironmentVariableIsSet("LEDGEWISE_NOTCH")) {
        if (const auto override = parseNotchOverride(qgetenv("LEDGEWISE_NOTCH")))
            return primary ? override : std::nullopt;
    }
    if (!isBuiltInPanel(screen))
        return std::nullopt;
    const auto pixels = detectedNotchPixels();
    if (!pixels)
        return std::nullopt;
    const double ratio = screen.devicePixelRatio() > 0 ? screen.devicePixelRatio() : 1.0;
    return NotchSize { pixels->width / ratio, pixels->height / ratio };
}

} // namespace

DisplaySnapshot makeDisplaySnapshot(
    const ScreenGeometry &screen, const ScreenGeometry &primary, const std::optional<NotchSize> &notch)
{
    const double primaryHeight = primary.geometry.height();
    DisplaySnapshot snapshot;
    snapshot.frame = fromTopLeft(QRectF(screen.geometry), primaryHeight);
    snapshot.visibleFrame = fromTopLeft(QRectF(screen.availableGeometry), primaryHeight);
    snapshot.menuBarHeight = std::max(0, primary.availableGeometry.top() - primary.geometry.top());
    if (notch) {
        const Rect &frame = snapshot.frame;
        const double notchLeft = frame.minX() + (frame.width - notch->width) / 2;
        const double notchRight = notchLeft + notch->width;
        const double top = frame.maxY() - notch->height;
        snapshot.auxiliaryTopLeft = { frame.minX(), top, notchLeft - frame.minX(), notch->height };
        snapshot.auxiliaryTopRight = { notchRight, top, frame.maxX() - notchRight, notch->height };
        snapshot.safeAreaTop = notch->height;
    }
    return snapshot;
}

DisplaySnapshot snapshotOf(const QScreen &screen)
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    return makeDisplaySnapshot(geometryOf(screen), geometryOf(primary ? *primary : screen), notchOf(screen));
}

bool isBuiltInPanel(const QScreen &screen)
{
    const QString name = screen.name();
    for (const char *prefix : { "eDP", "LVDS", "DSI" }) {
        if (name.startsWith(QLatin1String(prefix)))
            return true;
    }
    return false;
}

} // namespace ledgewise
