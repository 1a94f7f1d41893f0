// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Starting Ledgewise again while it runs: the settings open unless one of its own
// windows is already showing. The application model itself, on the test's X server.

#include "app/app_model.h"
#include "app/reopen_rule.h"
#include "surfaces/notch_controller.h"
#include "surfaces/notch_window_controller.h"
#include "tests/support/fake_key_value_store.h"
#include "updates/update_window.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>

using namespace ledgewise;

class TestReopen : public QObject
{
    Q_OBJECT

private slots:
    void onlyOwnNormalWindowsAndDialogsCount()
    {
        QWindow surface;
        surface.setFlags(Qt::Tool | Qt::FramelessWindowHint);
        surface.show();
        QWindow menu;
        menu.setFlags(Qt::Popup);
        menu.show();
        QWindow hidden;
        QTRY_VERIFY(surface.isExposed());
        QVERIFY(!anyOwnWindowShowing({ &surface, &menu, &hidden }));

        QWindow settings;
        settings.show();
        QVERIFY(anyOwnWindowShowing({ &surface, &settings }));
        settings.hide();
        QVERIFY(!anyOwnWindowShowing({ &surface, &settings }));

        QWindow dialog;
        dialog.setFlags(Qt::Dialog);
        dialog.show();
        QVERIFY(anyOwnWindowShowing({ &dialog }));
    }

    void reopeningOpensTheSettingsOnlyWhenNoWindowOfLedgewiseShows()
    {
        AppModel model(std::make_unique<FakeKeyValueStore>());
        model.start();
        QSignalSpy settings(&model, &AppModel::settingsRequested);

        // Only the surfaces: the settings open.
        model.reopen();
        QCOMPARE(settings.size(), 1);

        // The update window is showing: nothing more opens.
        model.checkForUpdates();
        QVERIFY(model.updateWindow() && model.updateWindow()->window());
        QQuickWindow *updates = model.updateWindow()->window();
        QTRY_VERIFY(updates->isExposed());
        model.reopen();
        QCOMPARE(settings.size(), 1);

        // Closed again: the settings open.
        updates->close();
        QTRY_VERIFY(!updates->isVisible());
        model.reopen();
        QCOMPARE(settings.size(), 2);
    }

    void aToggleBeforeTheSurfacesExistDoesNothing()
    {
        AppModel model(std::make_unique<FakeKeyValueStore>());
        const qsizetype before = QGuiApplication::topLevelWindows().size();
        model.toggleSurface(NotchSide::left);
        model.toggleSurface(NotchSide::right);
        QVERIFY(!model.notchController());
        QCOMPARE(QGuiApplication::topLevelWindows().size(), before);

        // Once they exist, the same toggle opens the left surface.
        model.start();
        QVERIFY(model.notchController());
        model.toggleSurface(NotchSide::left);
        const auto &surfaces = model.notchController()->controllers();
        QTRY_VERIFY(std::any_of(surfaces.begin(), surfaces.end(), [](const auto &surface) {
            return surface->surface()->side() == NotchSide::left
                && surface->surface()->presentation() == NotchPresentation::expanded;
        }));
    }
};

QTEST_MAIN(TestReopen)
#include "test_reopen.moc"
