// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_shadow.h"

#include "surfaces/surface_shape.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSurfaceFormat>

namespace ledgewise {

SurfaceShadow::SurfaceShadow(QQmlEngine &engine, const QString &title)
    : m_window(std::make_unique<QQuickView>(&engine, nullptr))
{
    QQuickView &window = *m_window;
    // Like the surface: over any top panel, never focused, left alone by the window
    // manager; and no click ever lands on it.
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
        | Qt::X11BypassWindowManagerHint | Qt::WindowTransparentForInput);
    window.setTitle(title);
    QSurfaceFormat format = window.requestedFormat();
    format.setAlphaBufferSize(8);
    window.setFormat(format);
    window.setColor(Qt::transparent);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.setInitialProperties({ { QStringLiteral("spread"), spread } });
    window.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ledgewise/Surfaces/ShadowView.qml")));
    if (window.status() == QQuickView::Error) {
        for (const QQmlError &error : window.errors())
            qWarning("%s", qPrintable(error.toString()));
    }
}

SurfaceShadow::~SurfaceShadow()
{
    m_window->close();
}

QRect SurfaceShadow::frameAround(const QRect &surfaceFrame)
{
    return surfaceFrame.adjusted(-spread, 0, spread, spread);
}

void SurfaceShadow::show(const QRect &surfaceFrame, double radius)
{
    m_shown = true;
    follow(surfaceFrame, radius);
    if (QQuickItem *root = m_window->rootObject())
        root->setProperty("shown", true);
    m_window->show();
}

void SurfaceShadow::follow(const QRect &surfaceFrame, double radius)
{
    if (!m_shown)
        return;
    const QRect frame = frameAround(surfaceFrame);
    m_window->setGeometry(frame);
    // The surface itself stays uncovered: its own window draws it, and under a
    // compositor the shadow would otherwise darken a translucent surface.
    const QRect surfaceInShadow(QPoint(spread, 0), surfaceFrame.size());
    m_window->setMask(QRegion(QRect(QPoint(0, 0), frame.size()))
        - roundedRegion(surfaceInShadow.size(), radius).translated(surfaceInShadow.topLeft()));
    if (QQuickItem *root = m_window->rootObject())
        root->setProperty("radius", radius);
}

void SurfaceShadow::hide()
{
    if (!m_shown)
        return;
    m_shown = false;
    if (QQuickItem *root = m_window->rootObject())
        root->setProperty("shown", false);
    m_window->hide();
}

} // namespace ledgewise
