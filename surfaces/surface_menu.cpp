// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_menu.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>

namespace ledgewise {

SurfaceMenu::SurfaceMenu(QQmlEngine &engine, QList<Entry> entries, QObject *parent)
    : QObject(parent)
    , m_engine(engine)
    , m_entries(std::move(entries))
{ }

SurfaceMenu::~SurfaceMenu()
{
    // At once: its view binds to this menu, which is going.
    if (m_window)
        m_window->removeEventFilter(this);
    m_window.reset();
}

QStringList SurfaceMenu::texts() const
{
    QStringList texts;
    for (const Entry &entry : m_entries)
        texts.append(entry.text);
    return texts;
}

bool SurfaceMenu::isOpen() const
{
    return m_window && m_window->isVisible();
}

QQuickWindow *SurfaceMenu::window() const
{
    return m_window.get();
}

QPoint SurfaceMenu::placement(QPoint point, QSize size, const QRect &screen)
{
    int x = point.x();
    int y = point.y();
    if (x + size.width() > screen.right() + 1)
        x = point.x() - size.width();
    if (y + size.height() > screen.bottom() + 1)
        y = point.y() - size.height();
    x = std::clamp(x, screen.left(), std::max(screen.left(), screen.right() + 1 - size.width()));
    y = std::clamp(y, screen.top(), std::max(screen.top(), screen.bottom() + 1 - size.height()));
    return { x, y };
}

void SurfaceMenu::popup(QPoint globalPosition)
{
    // A window for each opening, gone at its closing: a menu reshown in the same
    // window may find X's keyboard focus still elsewhere, and most of the time no
    // menu is open at all.
    dropWindow();
    m_inputGrabbed = false;
    m_window = std::make_unique<QQuickView>(&m_engine, nullptr);
    m_window->setFlags(Qt::Popup | Qt::FramelessWindowHint);
    m_window->setTitle(QStringLiteral("Ledgewise menu"));
    m_window->setColor(Qt::black);
    m_window->setResizeMode(QQuickView::SizeViewToRootObject);
    m_window->setInitialProperties({ { QStringLiteral("menu"), QVariant::fromValue(static_cast<QObject *>(this)) } });
    m_window->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ledgewise/Surfaces/SurfaceMenuView.qml")));
    m_window->installEventFilter(this);
    QScreen *screen = QGuiApplication::screenAt(globalPosition);
    const QRect area = screen ? screen->geometry() : QRect(globalPosition, m_window->size());
    m_window->setPosition(placement(globalPosition, m_window->size(), area));
    m_window->show();
    m_window->requestActivate();
    emit openChanged(true);
}

void SurfaceMenu::grabInput()
{
    // Held as a menu holds them: the keys come here wherever X's focus went, and a
    // press anywhere reaches the menu, which closes on one outside it.
    m_window->setKeyboardGrabEnabled(true);
    m_window->setMouseGrabEnabled(true);
}

void SurfaceMenu::close()
{
    if (!m_window)
        return;
    dropWindow();
    emit openChanged(false);
}

void SurfaceMenu::dropWindow()
{
    if (!m_window)
        return;
    m_window->removeEventFilter(this);
    m_window->setMouseGrabEnabled(false);
    m_window->setKeyboardGrabEnabled(false);
    m_window->hide();
    // Closed from inside its own handlers (a click, a key): deleted once they return.
    m_window.release()->deleteLater();
}

void SurfaceMenu::trigger(int index)
{
    if (index < 0 || index >= m_entries.size() || m_entries.at(index).text.isEmpty())
        return;
    close();
    // After the handler that pressed it has returned: the command may take the menu,
    // or the whole program, down with it.
    QMetaObject::invokeMethod(
        this,
        [this, index] {
            if (const auto &run = m_entries.at(index).run)
                run();
        },
        Qt::QueuedConnection);
}

bool SurfaceMenu::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_window.get())
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::Expose:
        // The pointer and keyboard are taken once the window is there to take them.
        if (m_window->isExposed() && !m_inputGrabbed) {
            m_inputGrabbed = true;
            grabInput();
        }
        break;
    case QEvent::MouseButtonPress: {
        // Holding the pointer, the menu is sent presses from anywhere; one outside it
        // closes it, and goes no further.
        const auto *press = static_cast<QMouseEvent *>(event);
        if (!m_window->geometry().contains(press->globalPosition().toPoint())) {
            close();
            return true;
        }
        break;
    }
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (m_keyInterceptor && m_keyInterceptor(*key))
            return true;
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ledgewise
