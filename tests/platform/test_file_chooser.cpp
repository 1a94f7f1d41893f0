// The desktop's file chooser without a loop of its own: shown and returning at once,
// answered once from the event loop, never to an asker that is gone, one at a time.
#include "platform/xdg/file_chooser.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace ledgewise;

class TestFileChooser : public QObject
{
    Q_OBJECT

private slots:
    void showsAModalChooserAndReturnsAtOnce()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(QStringLiteral("Choose a file to pin in Ledgewise."), QDir::tempPath(), QString(), &asker,
                           [&](const QString &path) { answers << path; });
        QFileDialog *dialog = chooser.openDialog();
        QVERIFY(dialog);
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->windowModality(), Qt::ApplicationModal);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Choose a file to pin in Ledgewise."));
        QCOMPARE(dialog->directory().absolutePath(), QDir(QDir::tempPath()).absolutePath());
        QCOMPARE(dialog->fileMode(), QFileDialog::ExistingFile);
        QVERIFY(answers.isEmpty());
    }

    void answersTheChosenFileOnceAndGoes()
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
        QPointer<QFileDialog> dialog = chooser.openDialog();
        dialog->selectFile(path);
        static_cast<QDialog *>(dialog.data())->accept(); // as its Open button does
        QCOMPARE(answers, QStringList{path});
        QVERIFY(!chooser.openDialog());
        QTRY_VERIFY(!dialog); // deleted once the answer is given
    }

    void cancelAnswersNothing()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList answers;
        chooser.chooseFile(QStringLiteral("Choose"), QString(), QString(), &asker,
                           [&](const QString &answer) { answers << answer; });
        QPointer<QFileDialog> dialog = chooser.openDialog();
        dialog->reject();
        QCOMPARE(answers, QStringList{QString()});
        QTRY_VERIFY(!dialog);
    }

    void aNewRequestCancelsTheChooserStillOpen()
    {
        DesktopFileChooser chooser;
        QObject asker;
        QStringList first;
        QStringList second;
        chooser.chooseFile(QStringLiteral("First"), QString(), QString(), &asker,
                           [&](const QString &answer) { first << answer; });
        QPointer<QFileDialog> earlier = chooser.openDialog();
        chooser.chooseFile(QStringLiteral("Second"), QString(), QString(), &asker,
                           [&](const QString &answer) { second << answer; });
        QCOMPARE(first, QStringList{QString()});
        QVERIFY(second.isEmpty());
        QCOMPARE(chooser.openDialog()->windowTitle(), QStringLiteral("Second"));
        QTRY_VERIFY(!earlier);
    }

    void anAskerGoneMeanwhileIsNeverCalled()
    {
        DesktopFileChooser chooser;
        auto asker = std::make_unique<QObject>();
        int calls = 0;
        chooser.chooseFile(QStringLiteral("Choose"), QString(), QString(), asker.get(), [&](const QString &) { ++calls; });
        asker.reset();
        QPointer<QFileDialog> dialog = chooser.openDialog();
        dialog->reject();
        QCOMPARE(calls, 0);
        QTRY_VERIFY(!dialog);
    }

    void goingAwayClosesTheChooserUnanswered()
    {
        auto chooser = std::make_unique<DesktopFileChooser>();
        QObject asker;
        int calls = 0;
        chooser->chooseFile(QStringLiteral("Choose"), QString(), QString(), &asker, [&](const QString &) { ++calls; });
        QPointer<QFileDialog> dialog = chooser->openDialog();
        chooser.reset();
        QVERIFY(!dialog);
        QVERIFY(!QApplication::activeModalWidget());
        QCOMPARE(calls, 0);
    }
};

QTEST_MAIN(TestFileChooser)
#include "test_file_chooser.moc"
