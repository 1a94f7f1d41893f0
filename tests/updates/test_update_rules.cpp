// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/appcast.h"
#include "updates/update_schedule.h"

#include <QTest>

using namespace ledgewise;
using namespace std::chrono_literals;

namespace {

QByteArray feed(const QByteArray &items)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
           "<rss version=\"2.0\" xmlns:ac=\"https://ledgewise.org/xml-namespaces/appcast\">\n"
           "  <channel>\n"
           "    <title>Ledgewise</title>\n"
           "    <link>https://ledgewise.org/</link>"
        + items
        + "\n"
          "  </channel>\n"
          "</rss>\n"
          "";
}

} // namespace

class TestUpdateRules : public QObject
{
    Q_OBJECT

private slots:
    void versionsCompareByTheirNumbers_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("order");
        QTest::newRow("same") << "0.1.0"
                              << "0.1.0" << 0;
        QTest::newRow("missing parts are zero") << "1.0"
                                                << "1.0.0" << 0;
        QTest::newRow("ten after nine") << "1.10"
                                        << "1.9" << 1;
        QTest::newRow("patch") << "0.1.1"
                               << "0.1.0" << 1;
        QTest::newRow("major") << "2"
                               << "1.99.99" << 1;
        QTest::newRow("older") << "0.0.9"
                               << "0.1.0" << -1;
        QTest::newRow("leading zeros") << "1.01"
                                       << "1.1" << 0;
        QTest::newRow("huge number") << "1.123456789012345678901234567890"
                                     << "1.9" << 1;
        QTest::newRow("beta before release") << "1.0b2"
                                             << "1.0" << -1;
        QTest::newRow("beta before patch") << "1.0b2"
                                           << "1.0.1" << -1;
        QTest::newRow("betas in order") << "1.0b2"
                                        << "1.0b10" << -1;
        QTest::newRow("beta after rc? letters compare") << "1.0rc1"
                                                        << "1.0b1" << 1;
        QTest::newRow("dash pre-release") << "1.0-beta"
                                          << "1.0" << -1;
        QTest::newRow("case of letters") << "1.0B1"
                                         << "1.0b1" << 0;
        QTest::newRow("empty is oldest") << ""
                                         << "0.0.1" << -1;
    }

    void versionsCompareByTheirNumbers()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, order);
        QCOMPARE(Appcast::compareVersions(a, b), order);
        QCOMPARE(Appcast::compareVersions(b, a), -order);
    }

    void newestItemOfAFeedWithVersionsInElementsAndEnclosures()
    {
        const QByteArray text
            = feed("\n"
                   "    <item>\n"
                   "      <title>Ledgewise 0.2.0</title>\n"
                   "      <link>https://ledgewise.org/download/0.2.0</link>\n"
                   "      <ac:releaseNotesLink>https://ledgewise.org/notes/0.2.0</ac:releaseNotesLink>\n"
                   "      <enclosure url=\"https://ledgewise.org/files/ledgewise-0.2.0.tar.gz\" ac:version=\"0.2.0\"\n"
                   "                 ac:shortVersionString=\"0.2\" length=\"123\" type=\"application/octet-stream\"/>\n"
                   "    </item>\n"
                   "    <item>\n"
                   "      <title>Ledgewise 0.10.0</title>\n"
                   "      <ac:version>0.10.0</ac:version>\n"
                   "      <ac:shortVersionString>0.10 \"Autumn\"</ac:shortVersionString>\n"
                   "      <enclosure url=\"https://ledgewise.org/files/ledgewise-0.10.0.tar.gz\" length=\"1\" "
                   "type=\"application/octet-stream\"/>\n"
                   "    </item>\n"
                   "    <item><title>No version: left out</title><link>https://ledgewise.org/x</link></item>");
        const auto items = Appcast::parse(text);
        QVERIFY(items);
        QCOMPARE(items->size(), 2);
        QCOMPARE(items->at(0).version, QStringLiteral("0.2.0"));
        QCOMPARE(items->at(0).displayVersion, QStringLiteral("0.2"));
        QCOMPARE(items->at(0).releaseNotes, QUrl(QStringLiteral("https://ledgewise.org/notes/0.2.0")));
        QCOMPARE(items->at(0).downloadPage, QUrl(QStringLiteral("https://ledgewise.org/download/0.2.0")));

        const auto newest = Appcast::newest(*items);
        QVERIFY(newest);
        QCOMPARE(newest->version, QStringLiteral("0.10.0"));
        QCOMPARE(newest->displayVersion, QStringLiteral("0.10 \"Autumn\""));
        QVERIFY(newest->releaseNotes.isEmpty());
        // No link: the enclosure is where it is downloaded.
        QCOMPARE(newest->downloadPage, QUrl(QStringLiteral("https://ledgewise.org/files/ledgewise-0.10.0.tar.gz")));
    }

    void addressesOtherThanWebPagesAreDropped()
    {
        const auto items = Appcast::parse(feed("\n"
                                               "    <item>\n"
                                               "      <ac:version>9</ac:version>\n"
                                               "      <link>file:///usr/bin/xterm</link>\n"
                                               "      <ac:releaseNotesLink>javascript:alert(1)</ac:releaseNotesLink>\n"
                                               "      <enclosure url=\"/relative/path\" ac:version=\"9\"/>\n"
                                               "    </item>"));
        QVERIFY(items);
        QCOMPARE(items->size(), 1);
        QVERIFY(items->at(0).downloadPage.isEmpty());
        QVERIFY(items->at(0).releaseNotes.isEmpty());
    }

    void anOverlongVersionIsNoVersion()
    {
        const auto items = Appcast::parse(feed("<item><ac:version>" + QByteArray(41, '1') + "</ac:version></item>"));
        QVERIFY(items);
        QVERIFY(items->isEmpty());
    }

    void whatIsNotAnAppcastDoesNotParse_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("html") << QByteArray("<!DOCTYPE html><html><body>Not found</body></html>");
        QTest::newRow("json") << QByteArray("{\"version\":\"9.9\"}");
        QTest::newRow("cut short") << feed("<item><ac:version>9</ac:version>").left(200);
        QTest::newRow("broken tag") << feed("<item><ac:version>9</ac:versio></item>");
        QTest::newRow("rss without channel") << QByteArray("<rss version=\"2.0\"></rss>");
        QTest::newRow("atom") << QByteArray("<feed xmlns=\"http://www.w3.org/2005/Atom\"><entry/></feed>");
        QTest::newRow("undeclared prefix")
            << QByteArray("<rss><channel><item><x:version>9</x:version></item></channel></rss>");
    }

    void whatIsNotAnAppcastDoesNotParse()
    {
        QFETCH(QByteArray, text);
        QVERIFY(!Appcast::parse(text));
    }

    void anEmptyChannelHasNoNewest()
    {
        const auto items = Appcast::parse(feed(""));
        QVERIFY(items);
        QVERIFY(!Appcast::newest(*items));
    }

    void firstCheckAMinuteAfterStartWhenNeverChecked()
    {
        const QDateTime start = QDateTime::fromString(QStringLiteral("2026-11-23T10:00:00Z"), Qt::ISODate);
        QCOMPARE(UpdateSchedule::nextCheck(start, std::nullopt, start), start.addSecs(60));
        QCOMPARE(UpdateSchedule::delayUntil(start.addSecs(60), start), 60000ms);
    }

    void aDayAfterTheLastCheckButNeverInTheFirstMinute()
    {
        const QDateTime start = QDateTime::fromString(QStringLiteral("2026-11-23T10:00:00Z"), Qt::ISODate);
        // Checked two days ago: due, but only once the first minute is over.
        QCOMPARE(UpdateSchedule::nextCheck(start, start.addDays(-2), start), start.addSecs(60));
        // Checked an hour ago (before a restart): a day after that check.
        QCOMPARE(UpdateSchedule::nextCheck(start, start.addSecs(-3600), start), start.addSecs(23 * 3600));
        // Running for days: a day after the last one.
        const QDateTime later = start.addDays(3);
        QCOMPARE(UpdateSchedule::nextCheck(start, later.addSecs(-10), later), later.addSecs(24 * 3600 - 10));
        // Overdue: no negative delay.
        QCOMPARE(UpdateSchedule::delayUntil(later.addSecs(-5), later), 0ms);
    }

    void aLastCheckInTheFutureIsNotTrusted()
    {
        const QDateTime start = QDateTime::fromString(QStringLiteral("2026-11-23T10:00:00Z"), Qt::ISODate);
        QCOMPARE(UpdateSchedule::nextCheck(start, start.addYears(5), start), start.addSecs(60));
        QCOMPARE(UpdateSchedule::nextCheck(start, QDateTime(), start), start.addSecs(60));
    }
};

QTEST_GUILESS_MAIN(TestUpdateRules)
#include "test_update_rules.moc"
