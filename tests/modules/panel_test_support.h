// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Hosting a module's panel in a window, as an expanded surface does, and reaching its
// parts by name.

#include "app/qml_modules.h"
#include "modules/ledgewise_module.h"
#include "tests/support/quick_item_search.h"

#include <QAccessible>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace ledgewise::testing {

class HostedPanel
{
public:
    explicit HostedPanel(LedgewiseModule &module)
    {
        addLedgewiseQmlModules(m_engine);
        QQmlComponent component(&m_engine, module.expandedView());
        m_root.reset(
            qobject_cast<QQuickItem *>(component.createWithInitialProperties(module.expandedViewProperties())));
        if (!m_root) {
            qWarning("%s", qPrintable(component.errorString()));
            return;
        }
        m_root->setParentItem(m_window.contentItem());
        m_root->setWidth(244); // the default expanded width less its insets
        // Sized to its content, as the surface's loader sizes it.
        m_root->setHeight(m_root->implicitHeight());
        QObject::connect(m_root.get(), &QQuickItem::implicitHeightChanged, m_root.get(),
            [root = m_root.get()] { root->setHeight(root->implicitHeight()); });
        // Layouts are placed when the window is polished, which a shown window is.
        m_window.resize(268, 340);
        m_window.show();
        m_exposed = QTest::qWaitForWindowExposed(&m_window);
    }

    QQuickItem *root() const { return m_exposed ? m_root.get() : nullptr; }
    QQuickItem *item(const QString &name, QQuickItem *within = nullptr) const
    {
        return findItem(within ? within : m_root.get(), name);
    }
    QString text(const QString &name, QQuickItem *within = nullptr) const
    {
        QQuickItem *found = item(name, within);
        return found ? found->property("text").toString() : QString();
    }
    bool visible(const QString &name) const { return item(name) && item(name)->isVisible(); }
    static QString accessibleName(QQuickItem *item)
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        return accessible ? accessible->text(QAccessible::Name) : QString();
    }
    static void press(QQuickItem *item)
    {
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
        QVERIFY(accessible && accessible->actionInterface());
        QCOMPARE(accessible->role(), QAccessible::Button);
        accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    // A click with the pointer at the centre of `item`, as the user makes it.
    static void click(QQuickItem *item)
    {
        QVERIFY(item && item->window());
        settle(item->window());
        const QPointF centre = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
        QTest::mouseClick(item->window(), Qt::LeftButton, Qt::NoModifier, centre.toPoint());
    }
    // Waits for the next frame, before which layouts place what changed.
    static void settle(QQuickWindow *window)
    {
        QSignalSpy swapped(window, &QQuickWindow::frameSwapped);
        window->update();
        QVERIFY(swapped.wait(5000));
    }
    void settle() { settle(&m_window); }
    // What the window shows.
    QImage grab()
    {
        settle();
        return m_window.grabWindow();
    }
    // Where `item` is drawn, in the window.
    static QRectF sceneRect(QQuickItem *item)
    {
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    }

private:
    QQuickWindow m_window;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickItem> m_root;
    bool m_exposed = false;
};

} // namespace ledgewise::testing
