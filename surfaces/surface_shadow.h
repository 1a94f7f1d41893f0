// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

#include <memory>

class QQmlEngine;
class QQuickView;

namespace ledgewise {

// The shadow an open surface casts: a window under nothing and over everything else,
// just around the surface's frame, that lets every click through and leaves the
// surface's own rounded shape uncovered.
class SurfaceShadow
{
public:
    // How far the shadow reaches beyond the surface, in points.
    static constexpr int spread = 16;

    SurfaceShadow(QQmlEngine &engine, const QString &title);
    ~SurfaceShadow();

    // Shows the shadow around a surface frame (screen coordinates) of a corner radius.
    void show(const QRect &surfaceFrame, double radius);
    // Moves an already shown shadow along with its surface.
    void follow(const QRect &surfaceFrame, double radius);
    void hide();
    bool isShown() const { return m_shown; }

    QQuickView *window() const { return m_window.get(); }

    // The shadow window's frame for a surface frame.
    static QRect frameAround(const QRect &surfaceFrame);

private:
    std::unique_ptr<QQuickView> m_window;
    bool m_shown = false;
};

} // namespace ledgewise
