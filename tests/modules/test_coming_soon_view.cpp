// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/qml_modules.h"
#include "modules/placeholder_modules.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTest>

using namespace ledgewise;

class TestComingSoonView : public QObject
{
    Q_OBJECT

private slots:
    void showsTitleAndMessageInIvory()
    {
        QQmlEngine engine;
        addLedgewiseQmlModules(engine);
        SystemStatusModule module;
        QQmlComponent component(&engine, module.expandedView());
        std::unique_ptr<QObject> view(component.createWithInitialProperties(module.expandedViewProperties()));
        QVERIFY2(view, qPrintable(component.errorString()));

        auto *title = view->findChild<QQuickItem *>(QStringLiteral("comingSoonTitle"));
        auto *message = view->findChild<QQuickItem *>(QStringLiteral("comingSoonMessage"));
        QVERIFY(title && message);

        const QColor ivory = QColor::fromRgbF(0.96f, 0.95f, 0.93f);
        QCOMPARE(title->property("text").toString(), QStringLiteral("System"));
        QCOMPARE(title->property("font").value<QFont>().pixelSize(), 12);
        QCOMPARE(title->property("font").value<QFont>().weight(), QFont::DemiBold);
        QCOMPARE(title->property("color").value<QColor>().rgba(), ivory.rgba());
        QCOMPARE(title->opacity(), 1.0);

        QCOMPARE(message->property("text").toString(), QStringLiteral("Coming in a later build"));
        QCOMPARE(message->property("font").value<QFont>().pixelSize(), 11);
        QCOMPARE(message->property("font").value<QFont>().weight(), QFont::Normal);
        QCOMPARE(message->property("color").value<QColor>().rgba(), ivory.rgba());
        QCOMPARE(message->opacity(), 0.62);

        QCOMPARE(view->property("spacing").toReal(), 6.0);
        // Leading alignment, a message below the title, 4 points of padding above and below.
        QCOMPARE(title->x(), message->x());
        QCOMPARE(title->y(), 4.0);
        QCOMPARE(message->y(), title->y() + title->height() + 6.0);
        QCOMPARE(qobject_cast<QQuickItem *>(view.get())->implicitHeight(),
            4.0 + title->height() + 6.0 + message->height() + 4.0);
    }
};

QTEST_MAIN(TestComingSoonView)
#include "test_coming_soon_view.moc"
