// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringList>

#include <functional>
#include <memory>

class QQmlEngine;
class QQuickView;
class QKeyEvent;
class QQuickWindow;

namespace ledgewise {

// The surfaces' own menu, drawn with Qt Quick: a popup window at the pointer, worked
// with the mouse or the keyboard and read by screen readers. While open it holds the
// pointer and the keyboard, as a menu does; a press outside it closes it.
class SurfaceMenu : public QObject
{
    Q_OBJECT
    // One text a row; an empty text is a separator.
    Q_PROPERTY(QStringList texts READ texts CONSTANT)
    Q_PROPERTY(bool open READ isOpen NOTIFY openChanged)

public:
    struct Entry {
        QString text; // empty: a separator
        std::function<void()> run;
    };

    SurfaceMenu(QQmlEngine &engine, QList<Entry> entries, QObject *parent = nullptr);
    ~SurfaceMenu() override;

    QStringList texts() const;
    bool isOpen() const;
    // The window while the menu is open.
    QQuickWindow *window() const;

    // Asked about each key the open menu is sent, before the menu acts on it; true takes
    // the key from the menu (a global shortcut pressed while the menu holds the keyboard).
    using KeyInterceptor = std::function<bool(const QKeyEvent &key)>;
    void setKeyInterceptor(KeyInterceptor interceptor) { m_keyInterceptor = std::move(interceptor); }

    // Opens the menu with its corner at `globalPosition`, turned to stay on that screen.
    void popup(QPoint globalPosition);
    // Runs the entry at `index` after the menu has closed.
    Q_INVOKABLE void trigger(int index);
    Q_INVOKABLE void close();

    // Where a menu of `size` opened at `point` goes: its top left corner at the point,
    // or its right or bottom edge there where it would leave `screen`, and never off it.
    static QPoint placement(QPoint point, QSize size, const QRect &screen);

signals:
    void openChanged(bool open);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void grabInput();
    void dropWindow();

    QQmlEngine &m_engine;
    QList<Entry> m_entries;
    std::unique_ptr<QQuickView> m_window;
    bool m_inputGrabbed = false;
    KeyInterceptor m_keyInterceptor;
};

} // namespace ledgewise
