// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/fake_key_value_store.h"
#include "tests/support/recording_url_opener.h"
#include "tests/updates/feed_server.h"
#include "updates/update_controller.h"
#include "updates/update_window.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace ledgewise;
using namespace ledgewise::testing;
using namespace std::chrono_literals;
using State = UpdateController::State;

namespace {

// The controller with its window, over the test's own server.
struct Updates {
    explicit Updates(
        const QString &feed, std::chrono::milliseconds deadline = 15s, std::chrono::milliseconds quiet = 1min)
    {
        UpdateController::Options options;
        options.feed = QUrl(feed);
        options.currentVersion = QStringLiteral("0.1.0");
        options.limits.deadline = deadline;
        options.quietAfterStart = quiet;
        controller = std::make_unique<UpdateController>(settings, opener, options);
        engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        window = std::make_unique<UpdateWindow>(*controller, engine);
    }

    // A text item of the window, by its object name.
    QQuickItem *item(const char *name) const
    {
        return window->window() ? window->window()->findChild<QQuickItem *>(QLatin1String(name)) : nullptr;
    }
    QString text(const char *name) const
    {
        QQuickItem *found = item(name);
        return found ? found->property("text").toString() : QStringLiteral("<no %1>").arg(QLatin1String(name));
    }
    bool shows(const char *name) const
    {
        QQuickItem *found = item(name);
        return found && found->isVisible();
    }

    FakeKeyValueStore settings;
    RecordingUrlOpener opener;
    QQmlEngine engine;
    std::unique_ptr<UpdateController> controller;
    std::unique_ptr<UpdateWindow> window;
};

} // namespace

class TestUpdateCheck : public QObject
{
    Q_OBJECT

private slots:
    void aNewerVersionIsOfferedWithItsNotesAndDownloadPage()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.body = appcastOf("0.2.0");
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        // The window shows at once, with the check going on.
        QVERIFY(updates.window->window());
        QTRY_VERIFY(updates.window->window()->isExposed());
        QCOMPARE(updates.window->window()->title(), QStringLiteral("Ledgewise Updates"));
        QTRY_COMPARE(updates.controller->state(), State::available);
        QCOMPARE(updates.text("heading"), QStringLiteral("Ledgewise 0.2.0 is available"));
        QCOMPARE(updates.text("detail"), QStringLiteral("You have Ledgewise 0.1.0."));
        QVERIFY(updates.shows("releaseNotesLink"));
        QVERIFY(updates.shows("downloadButton"));

        // The button opens the download page in the browser; the link the notes.
        QQuickItem *download = updates.item("downloadButton");
        QTest::mouseClick(updates.window->window(), Qt::LeftButton, {},
            download->mapToScene(QPointF(download->width() / 2, download->height() / 2)).toPoint());
        QTRY_COMPARE(
            updates.opener.opened, QList<QUrl> { QUrl(QStringLiteral("https://ledgewise.org/download/0.2.0")) });
        QQuickItem *notes = updates.item("releaseNotesLink");
        QTest::mouseClick(updates.window->window(), Qt::LeftButton, {},
            notes->mapToScene(QPointF(notes->width() / 2, notes->height() / 2)).toPoint());
        QTRY_COMPARE(updates.opener.opened.size(), 2);
        QCOMPARE(updates.opener.opened.last(), QUrl(QStringLiteral("https://ledgewise.org/notes/0.2.0")));
        // When it checked is kept for the next start.
        QVERIFY(QDateTime::fromString(
                    updates.settings.value(QString::fromLatin1(UpdateController::lastCheckKey)).toString(), Qt::ISODate)
                    .secsTo(QDateTime::currentDateTimeUtc())
            < 60);
    }

    void theSameOrAnOlderVersionIsUpToDate_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::newRow("same") << QByteArray("0.1.0");
        QTest::newRow("same, shorter") << QByteArray("0.1");
        QTest::newRow("older") << QByteArray("0.0.9");
        QTest::newRow("pre-release of ours") << QByteArray("0.1.0b3");
    }

    void theSameOrAnOlderVersionIsUpToDate()
    {
        QFETCH(QByteArray, version);
        FeedServer server;
        QVERIFY(server.listen());
        server.body = appcastOf(version);
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::upToDate);
        QCOMPARE(updates.text("heading"), QStringLiteral("Ledgewise is up to date"));
        QCOMPARE(updates.text("detail"), QStringLiteral("You have Ledgewise 0.1.0."));
        QVERIFY(!updates.shows("downloadButton"));
        QVERIFY(!updates.shows("releaseNotesLink"));
        QVERIFY(updates.shows("closeButton"));
    }

    void theRequestCarriesNothingAboutTheUser()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.body = appcastOf("0.1.0");
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::upToDate);
        QCOMPARE(server.requests.size(), 1);
        QList<QByteArray> lines = server.requests.first().split('\n');
        for (QByteArray &line : lines)
            line = line.trimmed();
        QCOMPARE(lines.takeFirst(), QByteArray("GET /appcast.xml HTTP/1.1"));
        QMap<QByteArray, QByteArray> headers;
        for (const QByteArray &line : std::as_const(lines))
            headers.insert(line.left(line.indexOf(':')).toLower(), line.mid(line.indexOf(':') + 1).trimmed());
        const QMap<QByteArray, QByteArray> expected = {
            { "host", "127.0.0.1:" + QByteArray::number(QUrl(server.url()).port()) },
            { "user-agent", "Ledgewise/0.1.0" },
            { "accept-language", "*" },
            { "accept-encoding", "identity" },
            { "connection", "Keep-Alive" },
        };
        QCOMPARE(headers, expected);
    }

    void aFeedThatDoesNotParseSaysSo_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("html page") << QByteArray("<!DOCTYPE html><html><body>Welcome</body></html>");
        QTest::newRow("cut short") << appcastOf("9.0").left(150);
        QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11);
    }

    void aFeedThatDoesNotParseSaysSo()
    {
        QFETCH(QByteArray, body);
        FeedServer server;
        QVERIFY(server.listen());
        server.body = body;
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::failed);
        QCOMPARE(updates.text("heading"), QStringLiteral("Ledgewise could not check for updates"));
        QCOMPARE(
            updates.text("detail"), QStringLiteral("The update feed could not be read: it is not a valid appcast."));
        QVERIFY(!updates.shows("downloadButton"));
        QVERIFY(updates.opener.opened.isEmpty());
    }

    void aFeedWithNoVersionSaysSo()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.body = "<rss version=\"2.0\"><channel><title>Ledgewise</title></channel></rss>";
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::failed);
        QCOMPARE(updates.text("detail"), QStringLiteral("The update feed lists no version of Ledgewise."));
    }

    void aServerThatDoesNotAnswerInTimeSaysSo()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.mode = FeedServer::Mode::silent;
        Updates updates(server.url(), 400ms);
        QElapsedTimer clock;
        clock.start();
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::failed);
        QVERIFY2(clock.elapsed() >= 400, QByteArray::number(clock.elapsed()));
        QCOMPARE(updates.text("detail"), QStringLiteral("The update feed did not answer within 0.4 seconds."));
        QCOMPARE(server.requests.size(), 1);
    }

    void theStandardDeadlineIsFifteenSeconds()
    {
        QCOMPARE(UpdateController::standardOptions().limits.deadline, 15s);
        QCOMPARE(UpdateController::standardOptions().limits.maximumBytes, 1024 * 1024);
        QCOMPARE(UpdateController::standardOptions().currentVersion, QStringLiteral(LEDGEWISE_VERSION));
    }

    void aFeedOverOneMegabyteIsNotRead_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("streamed") << int(FeedServer::Mode::hugeStreamed);
        QTest::newRow("announced") << int(FeedServer::Mode::hugeAnnounced);
    }

    void aFeedOverOneMegabyteIsNotRead()
    {
        QFETCH(int, mode);
        FeedServer server;
        QVERIFY(server.listen());
        server.mode = FeedServer::Mode(mode);
        Updates updates(server.url());
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::failed);
        QCOMPARE(updates.text("detail"), QStringLiteral("The update feed is larger than 1 MB, so it was not read."));
    }

    void aFeedThatRedirectsInALoopSaysSo()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.mode = FeedServer::Mode::redirectLoop;
        Updates updates(server.url(QStringLiteral("/a")));
        updates.controller->checkForUpdates();
        QTRY_COMPARE(updates.controller->state(), State::failed);
        QCOMPARE(updates.text("detail"),
            QStringLiteral("The update feed could not be fetched: its address redirects in a loop."));
        // Given up after a few rounds, not followed for ever.
        QVERIFY2(server.requests.size() <= 6, QByteArray::number(server.requests.size()));
    }

    void aMissingFeedOrNoServerSaysSo()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.mode = FeedServer::Mode::notFound;
        Updates missing(server.url());
        missing.controller->checkForUpdates();
        QTRY_COMPARE(missing.controller->state(), State::failed);
        QCOMPARE(missing.text("detail"),
            QStringLiteral("The update feed could not be fetched: the server answered 404 Not Found."));

        // A port where nothing listens.
        QTcpServer closed;
        QVERIFY(closed.listen(QHostAddress::LocalHost));
        const quint16 port = closed.serverPort();
        closed.close();
        Updates unreachable(QStringLiteral("http://127.0.0.1:%1/appcast.xml").arg(port));
        unreachable.controller->checkForUpdates();
        QTRY_COMPARE(unreachable.controller->state(), State::failed);
        QVERIFY2(unreachable.text("detail").startsWith(QStringLiteral("The update feed could not be reached: ")),
            qPrintable(unreachable.text("detail")));
    }

    void aBuildWithoutAFeedSaysSoAndNeverChecksByItself()
    {
        Updates updates { QString() };
        updates.controller->startAutomaticChecks();
        QVERIFY(!updates.controller->isCheckScheduled());
        QSignalSpy present(updates.controller.get(), &UpdateController::presentRequested);
        updates.controller->checkForUpdates();
        // Asked for: shown in front, whatever the outcome.
        QCOMPARE(present.size(), 1);
        QCOMPARE(present.first().first().toBool(), true);
        QCOMPARE(updates.controller->state(), State::failed);
        QCOMPARE(updates.text("detail"), QStringLiteral("This build of Ledgewise has no update feed."));
    }

    void automaticChecksWaitADayFromTheLastOne()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.body = appcastOf("0.2.0");
        Updates updates(server.url(), 15s, 300ms);
        // Checked an hour ago, before a restart: not again today.
        const QDateTime hourAgo = QDateTime::currentDateTimeUtc().addSecs(-3600);
        updates.settings.setValue(QString::fromLatin1(UpdateController::lastCheckKey), hourAgo.toString(Qt::ISODate));
        QSignalSpy present(updates.controller.get(), &UpdateController::presentRequested);
        updates.controller->startAutomaticChecks();
        QVERIFY(updates.controller->isCheckScheduled());
        QTest::qWait(1000); // three times the quiet start: nothing may be asked meanwhile
        QCOMPARE(server.requests.size(), 0);
        QCOMPARE(present.size(), 0);
    }

    void anAutomaticCheckComesAfterTheQuietStartAndShowsOnlyANewerVersion()
    {
        FeedServer server;
        QVERIFY(server.listen());
        server.body = appcastOf("0.2.0");
        Updates updates(server.url(), 15s, 300ms);
        updates.settings.setValue(QString::fromLatin1(UpdateController::lastCheckKey),
            QDateTime::currentDateTimeUtc().addDays(-2).toString(Qt::ISODate));
        QSignalSpy present(updates.controller.get(), &UpdateController::presentRequested);
        QElapsedTimer clock;
        clock.start();
        updates.controller->startAutomaticChecks();
        QTRY_COMPARE(server.requests.size(), 1);
        QVERIFY2(clock.elapsed() >= 300, QByteArray::number(clock.elapsed()));
        QTRY_COMPARE(updates.controller->state(), State::available);
        QCOMPARE(present.size(), 1);
        QCOMPARE(present.first().first().toBool(), false);
        QTRY_VERIFY(updates.window->window() && updates.window->window()->isExposed());
        QCOMPARE(updates.text("heading"), QStringLiteral("Ledgewise 0.2.0 is available"));
        // The next one a day later.
        QVERIFY(updates.controller->isCheckScheduled());

        // Up to date: nothing is shown.
        FeedServer quiet;
        QVERIFY(quiet.listen());
        quiet.body = appcastOf("0.1.0");
        Updates current(quiet.url(), 15s, 300ms);
        QSignalSpy shown(current.controller.get(), &UpdateController::presentRequested);
        current.controller->startAutomaticChecks();
        QTRY_COMPARE(current.controller->state(), State::upToDate);
        QCOMPARE(shown.size(), 0);
        QVERIFY(!current.window->window());
    }
};

QTEST_MAIN(TestUpdateCheck)
#include "test_update_check.moc"
