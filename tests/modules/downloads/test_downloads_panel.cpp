// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_module.h"
#include "platform/filesystem/folder_entries.h"
#include "platform/filesystem/folder_watcher.h"
#include "tests/modules/panel_test_support.h"
#include "tests/support/recording_url_opener.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

void grow(const QString &path, qint64 bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write(QByteArray(bytes, 'x'));
}

struct Fixture {
    Fixture()
        : store(folder.path(), std::make_unique<InotifyFolderWatcher>())
        , module(store, opener)
        , panel(module)
    { }
    QQuickItem *row(int index) const { return panel.item(QStringLiteral("downloadsRow_%1").arg(index)); }

    QTemporaryDir folder;
    DownloadsStore store;
    RecordingUrlOpener opener;
    DownloadsModule module;
    HostedPanel panel;
};

} // namespace

class TestDownloadsPanel : public QObject
{
    Q_OBJECT

private slots:
    void emptyFolderShowsOnlyTheHeaderAndTheHint()
    {
        Fixture f;
        QVERIFY(f.panel.root());
        QCOMPARE(f.panel.text(QStringLiteral("downloadsHeader")), QStringLiteral("Downloads"));
        QCOMPARE(f.panel.text(QStringLiteral("downloadsEmpty")), QStringLiteral("Nothing in Downloads yet."));
        QVERIFY(f.panel.visible(QStringLiteral("downloadsEmpty")));
        QVERIFY(!f.row(0));
    }

    void glanceNamesTheNewestFileOrSaysDownloads()
    {
        Fixture f;
        QCOMPARE(f.module.glanceSymbol(), QStringLiteral("arrow.down.circle"));
        QCOMPARE(f.module.glanceText(), QStringLiteral("Downloads"));
        QSignalSpy changes(&f.module, &LedgewiseModule::glanceChanged);
        grow(f.folder.filePath(QStringLiteral("report.pdf")), 10);
        QTRY_COMPARE(f.module.glanceText(), QStringLiteral("report.pdf"));
        QVERIFY(!f.module.glanceActive());
        QCOMPARE(changes.count(), 1);
    }

    void stateChangesInPlace()
    {
        Fixture f;
        const QString path = f.folder.filePath(QStringLiteral("film.part"));
        grow(path, 1000);
        QTRY_VERIFY(f.row(0));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("film.part"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Ready"));
        QCOMPARE(
            f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("doc"));
        grow(path, 4000);
        QTRY_COMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Downloading…"));
        QTRY_COMPARE_WITH_TIMEOUT(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Ready"), 3000);
    }

    void twelveRowsAtMost()
    {
        Fixture f;
        for (int i = 0; i < 15; ++i)
            grow(f.folder.filePath(QStringLiteral("file-%1").arg(i)), 1);
        QTRY_VERIFY(f.row(11));
        QVERIFY(!f.row(12));
    }

    void clickOpensTheFileAndAFileDeletedMeanwhileOpensNothing()
    {
        Fixture f;
        const QString path = f.folder.filePath(QStringLiteral("report.pdf"));
        grow(path, 10);
        QTRY_VERIFY(f.row(0));
        HostedPanel::press(f.row(0));
        QCOMPARE(f.opener.opened, QList<QUrl>({ QUrl::fromLocalFile(path) }));
        QCOMPARE(f.store.items().size(), 1); // the row stays

        // Deleted after the list was drawn, before the folder's change reaches the store.
        QVERIFY(QFile::remove(path));
        QVERIFY(f.row(0));
        HostedPanel::press(f.row(0));
        QCOMPARE(f.opener.opened.size(), 1);
    }

    void aNameThatIsNotUtf8IsReadableAndAClickOpensTheRealFile()
    {
        Fixture f;
        const QByteArray path = QFile::encodeName(f.folder.path()) + "/r\xff\xfeport.pdf";
        const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        QVERIFY(fd >= 0);
        ::close(fd);

        QTRY_VERIFY(f.row(0));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("r\uFFFD\uFFFDport.pdf"));
        HostedPanel::press(f.row(0));
        QCOMPARE(f.opener.opened.size(), 1);
        // The opener is handed the file's own bytes, not a name that only looks alike.
        QCOMPARE(FolderEntries::pathOfUrl(f.opener.opened.constFirst()), path);
        QVERIFY(FolderEntries::regularFile(FolderEntries::pathOfUrl(f.opener.opened.constFirst())));
    }

    void rowsShowTheDocSymbolAtItsNaturalWidthAndTheStateUnderTheName()
    {
        Fixture f;
        grow(f.folder.filePath(QStringLiteral("notes.txt")), 3);
        QTRY_VERIFY(f.row(0));
        QQuickItem *icon = f.panel.item(QStringLiteral("rowIcon"), f.row(0));
        QQuickItem *symbol = f.panel.item(QStringLiteral("rowSymbol"), f.row(0));
        QTRY_COMPARE(icon->width(), symbol->width());
        QCOMPARE(symbol->opacity(), 0.7);
        QVERIFY(f.panel.item(QStringLiteral("rowSubtitle"), f.row(0))->isVisible());
        QCOMPARE(f.panel.item(QStringLiteral("rowSubtitle"), f.row(0))->opacity(), 0.45);
    }
};

QTEST_MAIN(TestDownloadsPanel)
#include "test_downloads_panel.moc"
