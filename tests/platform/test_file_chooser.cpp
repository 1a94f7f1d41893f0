// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop's file chooser, shown by Ledgewise's chooser program on the test's X
// display and driven with xdotool as a user would: the asker returns at once and is
// answered once from the event loop, never when it is gone; one chooser at a time; a
// chooser whose owner goes is closed; a missing chooser program answers "cancelled".
#include "platform/xdg/file_chooser.h"
#include "tests/support/x11_tools.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// The X window showing a chooser titled `title`, once it is on screen; empty if none.
QString chooserWindow(const QString &title)
{
    return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
        QStringLiteral("^%1$").arg(QRegularExpression::escape(title)) });
}

// Types `text` into the chooser's file name field (it has the keyboard as it opens)
// and presses Return.
void typeAnswer(const QString &window, const QString &text)
{
    xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("ctrl+a"),
        QStringLiteral("BackSpace") });
    xdotool({ QStringLiteral("type"), QStringLiteral("--window"), window, text });
    xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("Return") });
}

// Escape, again if the chooser was not ready for the first: the chooser is gone.
bool escape(const DesktopFileChooser &chooser, const QString &window)
{
    for (int attempt = 0; attempt < 3 && chooser.isOpen(); ++attempt) {
        xdotool({ QStringLiteral("key"), QStringLiteral("--window"), window, QStringLiteral("Escape") });
        if (QTest::qWaitFor([&] { return !chooser.isOpen(); }, 5000))
            break;
    }
    return !chooser.isOpen();
}

} // namespace

class TestFileChooser : public QObject
{
    Q_OBJECT

private slots:
    void showsTheChooserAndReturnsAtOnce()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(QStringLiteral("Choose a file to pin in Ledgewise."), QDir::tempPath(), QString(), &asker,
            [&](const QString &path) { answers << path; });
        QVERIFY(chooser.isOpen());
        QVERIFY(answers.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!chooserWindow(QStringLiteral("Choose a file to pin in Ledgewise.")).isEmpty(), 20000);
        QVERIFY(answers.isEmpty());
    }

    void answersTheChosenFileInItsStartFolderOnce()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("plan.odt"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();

        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(QStringLiteral("Choose"), folder.path(), QString(), &asker,
            [&](const QString &answer) { answers << answer; });
        QString window;
        QTRY_VERIFY_WITH_TIMEOUT(!(window = chooserWindow(QStringLiteral("Choose"))).isEmpty(), 20000);
        // A bare name is looked for in the folder the chooser opened in.
        typeAnswer(window, QStringLiteral("plan.odt"));
        QTRY_COMPARE_WITH_TIMEOUT(answers, QStringList { path }, 15000);
        QTRY_VERIFY(!chooser.isOpen());
        QTRY_VERIFY(chooserWindow(QStringLiteral("Choose")).isEmpty());
    }

    void escapeAnswersNothing()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(
            QStringLiteral("Choose"), QString(), QString(), &asker, [&](const QString &answer) { answers << answer; });
        QString window;
        QTRY_VERIFY_WITH_TIMEOUT(!(window = chooserWindow(QStringLiteral("Choose"))).isEmpty(), 20000);
        QVERIFY(escape(chooser, window));
        QTRY_COMPARE(answers, QStringList { QString() });
    }

    void aNewRequestCancelsTheChooserStillOpen()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList first;
        QStringList second;
        chooser.chooseFile(
            QStringLiteral("First"), QString(), QString(), &asker, [&](const QString &answer) { first << answer; });
        QTRY_VERIFY_WITH_TIMEOUT(!chooserWindow(QStringLiteral("First")).isEmpty(), 20000);
        chooser.chooseFile(
            QStringLiteral("Second"), QString(), QString(), &asker, [&](const QString &answer) { second << answer; });
        QCOMPARE(first, QStringList { QString() });
        QVERIFY(second.isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!chooserWindow(QStringLiteral("Second")).isEmpty(), 20000);
        QVERIFY(chooserWindow(QStringLiteral("First")).isEmpty());
    }

    void anAskerGoneMeanwhileIsNeverCalled()
    {
        DesktopFileChooser chooser;
        auto asker = std::make_unique<QObject>();
        int calls = 0;
        chooser.chooseFile(
            QStringLiteral("Choose"), QString(), QString(), asker.get(), [&](const QString &) { ++calls; });
        QString window;
        QTRY_VERIFY_WITH_TIMEOUT(!(window = chooserWindow(QStringLiteral("Choose"))).isEmpty(), 20000);
        asker.reset();
        QVERIFY(escape(chooser, window));
        QCOMPARE(calls, 0);
    }

    void goingAwayClosesTheChooserUnanswered()
    {
        auto chooser = std::make_unique<DesktopFileChooser>();
        QObject asker;
        int calls = 0;
        chooser->chooseFile(QStringLiteral("Choose"), QString(), QString(), &asker, [&](const QString &) { ++calls; });
        QTRY_VERIFY_WITH_TIMEOUT(!chooserWindow(QStringLiteral("Choose")).isEmpty(), 20000);
        chooser.reset();
        QTRY_VERIFY(chooserWindow(QStringLiteral("Choose")).isEmpty());
        QCOMPARE(calls, 0);
    }

    void aMissingChooserProgramAnswersCancelled()
    {
        qputenv("LEDGEWISE_FILE_CHOOSER", "/nonexistent/ledgewise-file-chooser");
        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(
            QStringLiteral("Choose"), QString(), QString(), &asker, [&](const QString &answer) { answers << answer; });
        QTRY_COMPARE(answers, QStringList { QString() });
        QVERIFY(!chooser.isOpen());
    }
};

QTEST_MAIN(TestFileChooser)
#include "test_file_chooser.moc"
