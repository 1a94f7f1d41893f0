// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_actions.h"
#include "dragdrop/unique_name.h"
#include "platform/dbus/device_sender.h"
#include "platform/xdg/mail_composer.h"
#include "tests/support/fake_pasteboard.h"
#include "tests/support/recording_url_opener.h"

#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <future>

using namespace ledgewise;

namespace {

DropPayload textPayload(const QString &text)
{
    return DropPayload { DropPayload::Kind::text, {}, {}, text, std::nullopt };
}

DropPayload linkPayload(const QList<QUrl> &urls)
{
    return DropPayload { DropPayload::Kind::urls, {}, urls, std::nullopt, std::nullopt };
}

DropPayload filePayload(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    return DropPayload { DropPayload::Kind::files, urls, {}, std::nullopt, std::nullopt };
}

DropPayload imagePayload()
{
    QImage image(6, 3, QImage::Format_ARGB32);
    image.fill(Qt::green);
    return DropPayload { DropPayload::Kind::image, {}, {}, std::nullopt, image };
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

// Saves on another thread and reports whether the save ended within ten seconds. If it
// did not, it is stuck reading `fifo`: a writer that opens and closes it lets it end.
bool saveEnds(const DropPayload &payload, const QString &downloads, const QString &fifo)
{
    auto saving = std::async(std::launch::async, [&] { DropActions::save(payload, downloads); });
    if (saving.wait_for(std::chrono::seconds(10)) == std::future_status::ready)
        return true;
    const int writer = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
    if (writer >= 0)
        ::close(writer);
    saving.wait();
    return false;
}

class RecordingMailComposer final : public MailComposer
{
public:
    bool compose(const MailDraft &draft) override
    {
        drafts.append(draft);
        return true;
    }
    QList<MailDraft> drafts;
};

class RecordingDeviceSender final : public DeviceSender
{
public:
    bool canSend() const override { return reachable; }
    bool send(const DeviceShare &share) override
    {
        sent.append(share);
        return true;
    }
    bool reachable = true;
    QList<DeviceShare> sent;
};

} // namespace

class TestDropActions : public QObject
{
    Q_OBJECT

private slots:
    void uniqueNamesCountUpFromOne()
    {
        QSet<QString> taken;
        auto isTaken = [&taken](const QString &name) { return taken.contains(name); };
        QCOMPARE(uniqueName(QStringLiteral("Dropped.png"), isTaken), QStringLiteral("Dropped.png"));
        taken << QStringLiteral("Dropped.png");
        QCOMPARE(uniqueName(QStringLiteral("Dropped.png"), isTaken), QStringLiteral("Dropped-1.png"));
        taken << QStringLiteral("Dropped-1.png");
        QCOMPARE(uniqueName(QStringLiteral("Dropped.png"), isTaken), QStringLiteral("Dropped-2.png"));
        taken << QStringLiteral("archive.tar.gz") << QStringLiteral("notes") << QStringLiteral(".bashrc");
        QCOMPARE(uniqueName(QStringLiteral("archive.tar.gz"), isTaken), QStringLiteral("archive.tar-1.gz"));
        QCOMPARE(uniqueName(QStringLiteral("notes"), isTaken), QStringLiteral("notes-1"));
        QCOMPARE(uniqueName(QStringLiteral(".bashrc"), isTaken), QStringLiteral(".bashrc-1"));
    }

    void savingTextThreeTimes()
    {
        QTemporaryDir downloads;
        for (int i = 0; i < 3; ++i)
            DropActions::save(textPayload(QStringLiteral("héllo %1").arg(i)), downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped-1.txt", "Dropped-2.txt", "Dropped.txt" }));
        QCOMPARE(contents(downloads.filePath("Dropped.txt")), QByteArray("h\xc3\xa9llo 0"));
        QCOMPARE(contents(downloads.filePath("Dropped-2.txt")), QByteArray("h\xc3\xa9llo 2"));
    }

    void savingTwoLinksWritesOneShortcutWithTheFirst()
    {
        QTemporaryDir downloads;
        DropActions::save(linkPayload({ QUrl(QStringLiteral("https://example.org/a b")),
                              QUrl(QStringLiteral("https://second.example/")) }),
            downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped.url" }));
        QCOMPARE(contents(downloads.filePath("Dropped.url")),
            QByteArray("[InternetShortcut]\nURL=https://example.org/a%20b\n"));
    }

    void savingAnImageWritesAPng()
    {
        QTemporaryDir downloads;
        DropActions::save(imagePayload(), downloads.path());
        DropActions::save(imagePayload(), downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped-1.png", "Dropped.png" }));
        const QByteArray png = contents(downloads.filePath("Dropped.png"));
        QVERIFY(png.startsWith("\x89PNG"));
        QImage read;
        QVERIFY(read.loadFromData(png));
        QCOMPARE(read.size(), QSize(6, 3));
    }

    void savingFilesCopiesAndNeverMoves()
    {
        QTemporaryDir source, downloads;
        writeFile(source.filePath("notes"), "mine");
        writeFile(source.filePath("archive.tar.gz"), "gz");
        writeFile(downloads.filePath("notes"), "already here");
        writeFile(downloads.filePath("archive.tar.gz"), "older");
        DropActions::save(
            filePayload({ source.filePath("notes"), source.filePath("archive.tar.gz") }), downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "archive.tar-1.gz", "archive.tar.gz", "notes", "notes-1" }));
        QCOMPARE(contents(downloads.filePath("notes")), QByteArray("already here"));
        QCOMPARE(contents(downloads.filePath("notes-1")), QByteArray("mine"));
        QCOMPARE(contents(downloads.filePath("archive.tar-1.gz")), QByteArray("gz"));
        QVERIFY(QFile::exists(source.filePath("notes")));
        QVERIFY(QFile::exists(source.filePath("archive.tar.gz")));
    }

    void foldersAreCopiedWhole()
    {
        QTemporaryDir source, downloads;
        QVERIFY(QDir(source.path()).mkpath("project/src/deep"));
        writeFile(source.filePath("project/README"), "read me");
        writeFile(source.filePath("project/src/deep/main.c"), "int main;");
        writeFile(source.filePath("project/.hidden"), "h");
        DropActions::save(filePayload({ source.filePath("project") }), downloads.path());
        QCOMPARE(contents(downloads.filePath("project/README")), QByteArray("read me"));
        QCOMPARE(contents(downloads.filePath("project/src/deep/main.c")), QByteArray("int main;"));
        QCOMPARE(contents(downloads.filePath("project/.hidden")), QByteArray("h"));
        QVERIFY(QFile::exists(source.filePath("project/README")));
    }

    void folderGivenWithATrailingSlashIsSavedUnderItsName()
    {
        QTemporaryDir source, downloads;
        QVERIFY(QDir(source.path()).mkpath("Holiday photos"));
        writeFile(source.filePath("Holiday photos/beach.jpg"), "sand");
        QVERIFY(QDir(downloads.path()).mkpath("Holiday photos"));
        const QUrl folder = QUrl::fromLocalFile(source.filePath("Holiday photos") + QLatin1Char('/'));
        DropActions::save(DropPayload { DropPayload::Kind::files, { folder, folder }, {}, std::nullopt, std::nullopt },
            downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "Holiday photos", "Holiday photos-1", "Holiday photos-2" }));
        QVERIFY(entries(downloads.filePath("Holiday photos")).isEmpty());
        QCOMPARE(contents(downloads.filePath("Holiday photos-1/beach.jpg")), QByteArray("sand"));
        QCOMPARE(contents(downloads.filePath("Holiday photos-2/beach.jpg")), QByteArray("sand"));
    }

    void pipeInsideADroppedFolderIsSkippedWithoutWaiting()
    {
        QTemporaryDir source, downloads;
        QVERIFY(QDir(source.path()).mkpath("project"));
        writeFile(source.filePath("project/a.txt"), "first");
        const QString fifo = source.filePath("project/pipe");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        writeFile(source.filePath("project/z.txt"), "last");
        QVERIFY(QFile::link(source.filePath("project/a.txt"), source.filePath("project/link")));

        QVERIFY2(
            saveEnds(filePayload({ source.filePath("project") }), downloads.path(), fifo), "save waited on a pipe");
        QCOMPARE(entries(downloads.filePath("project")), QStringList({ "a.txt", "link", "z.txt" }));
        QCOMPARE(contents(downloads.filePath("project/z.txt")), QByteArray("last"));
        QCOMPARE(QFileInfo(downloads.filePath("project/link")).symLinkTarget(), source.filePath("project/a.txt"));
    }

    void droppedPipeOrDeviceIsNotCopied()
    {
        QTemporaryDir source, downloads;
        const QString fifo = source.filePath("pipe");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        QVERIFY2(saveEnds(filePayload({ fifo, QStringLiteral("/dev/null") }), downloads.path(), fifo),
            "save waited on a pipe");
        QVERIFY(entries(downloads.path()).isEmpty());
    }

    void folderSavedIntoTheDownloadsFolderInsideIt()
    {
        QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkpath("Downloads"));
        writeFile(home.filePath("notes.txt"), "n");
        writeFile(home.filePath("Downloads/old.zip"), "z");
        DropActions::save(filePayload({ home.path() }), home.filePath("Downloads"));
        const QString copy = home.filePath("Downloads/" + QFileInfo(home.path()).fileName());
        QCOMPARE(entries(copy), QStringList({ "Downloads", "notes.txt" }));
        QCOMPARE(entries(copy + "/Downloads"), QStringList({ "old.zip" }));
        QCOMPARE(entries(home.filePath("Downloads")), QStringList({ "old.zip", QFileInfo(home.path()).fileName() }));
    }

    void missingSourcesAreSkippedAndTheRestSaved()
    {
        QTemporaryDir source, downloads;
        writeFile(source.filePath("real.txt"), "real");
        DropActions::save(filePayload({ source.filePath("gone.txt"), source.filePath("real.txt") }), downloads.path());
        QCOMPARE(entries(downloads.path()), QStringList({ "real.txt" }));
    }

    void missingDownloadsFolderIsNotCreated()
    {
        QTemporaryDir home;
        const QString missing = home.filePath("Downloads");
        DropActions::save(textPayload(QStringLiteral("x")), missing);
        DropActions::save(imagePayload(), missing);
        QVERIFY(!QFile::exists(missing));
    }

    void readOnlyDownloadsFolderEndsQuietly()
    {
        if (::geteuid() == 0)
            QSKIP("root writes into read-only folders; the permission cannot be exercised here");
        QTemporaryDir downloads;
        writeFile(downloads.filePath("Dropped.txt"), "keep");
        QFile::setPermissions(downloads.path(), QFile::ReadOwner | QFile::ExeOwner);
        DropActions::save(textPayload(QStringLiteral("new")), downloads.path());
        QFile::setPermissions(downloads.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped.txt" }));
        QCOMPARE(contents(downloads.filePath("Dropped.txt")), QByteArray("keep"));
    }

    void downloadsFolderNoOneCanWriteIntoEndsQuietly()
    {
        // Nobody, root included, makes files in /proc; its entries exist and some can be
        // written to (comm renames this process), so a save must leave them alone.
        const QString downloads = QStringLiteral("/proc/self");
        QFile comm(downloads + "/comm");
        QVERIFY(comm.open(QIODevice::ReadOnly));
        const QByteArray name = comm.readAll();
        comm.close();

        QTemporaryDir source;
        writeFile(source.filePath("comm"), "overwritten\n");
        QVERIFY(QDir(source.path()).mkpath("folder"));
        writeFile(source.filePath("folder/inside"), "x");
        DropActions::save(filePayload({ source.filePath("comm"), source.filePath("folder") }), downloads);
        DropActions::save(textPayload(QStringLiteral("new")), downloads);
        DropActions::save(imagePayload(), downloads);
        DropActions::save(linkPayload({ QUrl(QStringLiteral("https://example.org/")) }), downloads);

        QVERIFY(comm.open(QIODevice::ReadOnly));
        QCOMPARE(comm.readAll(), name);
        for (const char *made : { "comm-1", "folder", "Dropped.txt", "Dropped.png", "Dropped.url" })
            QVERIFY2(!QFileInfo::exists(downloads + "/" + QLatin1String(made)), made);
    }

    void downloadsPathUnderAFileEndsQuietly()
    {
        QTemporaryDir home;
        writeFile(home.filePath("Downloads"), "a file, not a folder");
        const QString downloads = home.filePath("Downloads/inner");
        DropActions::save(textPayload(QStringLiteral("new")), downloads);
        DropActions::save(filePayload({ home.filePath("Downloads") }), downloads);
        QCOMPARE(entries(home.path()), QStringList({ "Downloads" }));
        QCOMPARE(contents(home.filePath("Downloads")), QByteArray("a file, not a folder"));
    }

    void nothingExistingIsOverwrittenEvenByADanglingLink()
    {
        QTemporaryDir downloads;
        QVERIFY(QFile::link(downloads.filePath("nowhere"), downloads.filePath("Dropped.txt")));
        DropActions::save(textPayload(QStringLiteral("new")), downloads.path());
        QVERIFY(!QFile::exists(downloads.filePath("nowhere")));
        QCOMPARE(contents(downloads.filePath("Dropped-1.txt")), QByteArray("new"));
    }

    void copyingTwoFilesPutsBothAndNothingElse()
    {
        FakePasteboard pasteboard;
        pasteboard.copyFromElsewhere(new QMimeData);
        DropActions::copy(filePayload({ "/tmp/a b.txt", "/tmp/c.png" }), pasteboard);
        QCOMPARE(pasteboard.clears, 1);
        QCOMPARE(pasteboard.types(), QStringList({ "text/uri-list", "x-special/gnome-copied-files" }));
        QCOMPARE(pasteboard.contents()->urls(),
            QList<QUrl>({ QUrl::fromLocalFile("/tmp/a b.txt"), QUrl::fromLocalFile("/tmp/c.png") }));
        QCOMPARE(pasteboard.data(QStringLiteral("x-special/gnome-copied-files")),
            QByteArray("copy\nfile:///tmp/a%20b.txt\nfile:///tmp/c.png"));
    }

    void copyingLinksImageAndText()
    {
        FakePasteboard pasteboard;
        DropActions::copy(linkPayload({ QUrl(QStringLiteral("https://example.org/")) }), pasteboard);
        QCOMPARE(pasteboard.contents()->urls(), QList<QUrl>({ QUrl(QStringLiteral("https://example.org/")) }));
        QCOMPARE(pasteboard.contents()->text(), QStringLiteral("https://example.org/"));

        DropActions::copy(imagePayload(), pasteboard);
        QVERIFY(pasteboard.contents()->hasImage());
        QVERIFY(!pasteboard.contents()->hasText());

        DropActions::copy(textPayload(QStringLiteral("plain words")), pasteboard);
        QCOMPARE(pasteboard.contents()->text(), QStringLiteral("plain words"));
        QVERIFY(!pasteboard.contents()->hasUrls());
        QCOMPARE(pasteboard.clears, 3);
    }

    void aFiftyMegabyteTextIsCopiedAndRefusedAsALinkWithoutConvertingIt()
    {
        QByteArray text(50 * 1024 * 1024, 'x');
        text.replace(0, 8, "https://");
        QMimeData offered;
        offered.setData(QStringLiteral("text/plain"), text);
        const auto payload = DropPayload::from(offered);
        QVERIFY(payload);

        FakePasteboard pasteboard;
        DropActions::copy(*payload, pasteboard);
        QCOMPARE(pasteboard.data(QStringLiteral("text/plain")).size(), text.size());
        QCOMPARE(pasteboard.data(QStringLiteral("text/plain")), text);
        // Far too long for a link, though it starts as one: Open hands nothing on.
        RecordingUrlOpener opener;
        DropActions::open(*payload, opener);
        QVERIFY(opener.opened.isEmpty());
        // None of it converted the whole text on the way.
        QVERIFY(!payload->text.isDecoded());
    }

    void copyClearsEvenWhenThereIsNothingToWrite()
    {
        FakePasteboard pasteboard;
        auto *old = new QMimeData;
        old->setText(QStringLiteral("old"));
        pasteboard.copyFromElsewhere(old);
        DropActions::copy(DropPayload {}, pasteboard);
        QCOMPARE(pasteboard.clears, 1);
        QVERIFY(pasteboard.types().isEmpty());
    }

    void openingFilesLinksAndAddresses()
    {
        RecordingUrlOpener opener;
        DropActions::open(filePayload({ "/tmp/one", "/tmp/two" }), opener);
        QCOMPARE(opener.opened, QList<QUrl>({ QUrl::fromLocalFile("/tmp/one"), QUrl::fromLocalFile("/tmp/two") }));

        opener.opened.clear();
        QVERIFY(DropActions::open(linkPayload({ QUrl(QStringLiteral("https://a.example")),
                                      QUrl(QStringLiteral("mailto:someone@example.org")) }),
            opener));
        QCOMPARE(opener.opened.size(), 2);

        opener.opened.clear();
        DropActions::open(textPayload(QStringLiteral("https://example.org/path")), opener);
        QCOMPARE(opener.opened, QList<QUrl>({ QUrl(QStringLiteral("https://example.org/path")) }));

        opener.opened.clear();
        DropActions::open(textPayload(QStringLiteral("example.org/path")), opener);
        DropActions::open(textPayload(QStringLiteral("two words")), opener);
        DropActions::open(imagePayload(), opener);
        QVERIFY(opener.opened.isEmpty());
    }

    void openRefusesEverySchemeButWebMailAndLocalFiles()
    {
        RecordingUrlOpener opener;
        for (const char *refused : { "ftp://b.example/file", "foo-handler:do-something", "javascript:alert(1)",
                 "file://otherhost/x", "file:relative", "smb://server/share", "http:no-host" }) {
            const QUrl url(QString::fromLatin1(refused));
            QVERIFY2(!DropActions::mayOpen(url), refused);
            QVERIFY2(!DropActions::open(linkPayload({ url }), opener), refused);
            QVERIFY2(!DropActions::open(textPayload(QString::fromLatin1(refused)), opener), refused);
        }
        // One refused link among good ones: nothing is opened.
        QVERIFY(!DropActions::open(
            linkPayload({ QUrl(QStringLiteral("https://a.example")), QUrl(QStringLiteral("foo:bar")) }), opener));
        QVERIFY(!DropActions::open(DropPayload { DropPayload::Kind::files,
                                       { QUrl(QStringLiteral("file://otherhost/x")) }, {}, std::nullopt, std::nullopt },
            opener));
        QVERIFY(opener.opened.isEmpty());

        const QList<QUrl> allowed = { QUrl(QStringLiteral("http://example.org/")),
            QUrl(QStringLiteral("https://example.org/a")), QUrl(QStringLiteral("mailto:me@example.org")),
            QUrl(QStringLiteral("HTTPS://EXAMPLE.ORG/")), QUrl::fromLocalFile(QStringLiteral("/tmp/notes.txt")) };
        for (const QUrl &url : allowed) {
            QVERIFY2(DropActions::mayOpen(url), qPrintable(url.toString()));
            QVERIFY(DropActions::open(linkPayload({ url }), opener));
        }
        QCOMPARE(opener.opened, allowed);
        QCOMPARE(DropActions::refusedToOpenText(), QStringLiteral("Can't open this kind of link."));
    }

    void relativeFileUrisSaveNothingFromTheWorkingFolder()
    {
        QTemporaryDir working, downloads;
        writeFile(working.filePath("private.txt"), "mine");
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(working.path()));
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), "file:.\r\nfile:..\r\nfile:private.txt\r\n");
        data.setData(QStringLiteral("x-special/gnome-copied-files"), "copy\nfile:.\nfile:private.txt");
        const auto payload = DropPayload::from(data);
        if (payload)
            DropActions::save(*payload, downloads.path());
        QDir::setCurrent(before);
        QVERIFY(entries(downloads.path()).isEmpty());
    }

    void shareAttachesTheDroppedRegularFiles()
    {
        QTemporaryDir folder;
        const QString report = folder.filePath(QStringLiteral("report 1.pdf"));
        const QString odd = folder.filePath(QStringLiteral("--subject\nline.txt"));
        writeFile(report, "pdf");
        writeFile(odd, "odd");
        QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("photos")));
        const DropPayload payload = filePayload(
            { report, folder.filePath(QStringLiteral("photos")), folder.filePath(QStringLiteral("gone.txt")), odd });
        // A folder or a file gone meanwhile cannot be attached; the others still are.
        QCOMPARE(DropActions::mailDraft(payload), (MailDraft { { report, odd }, {} }));

        RecordingMailComposer mail;
        FakePasteboard pasteboard;
        RecordingUrlOpener opener;
        QTemporaryDir downloads;
        DropActions::Context context { pasteboard, opener, downloads.path(), &mail, nullptr };
        DropActions::perform(DropAction::share, payload, context);
        QCOMPARE(mail.drafts, QList<MailDraft>({ MailDraft { { report, odd }, {} } }));
        // Nothing else is touched.
        QCOMPARE(pasteboard.changeCount(), 0);
        QVERIFY(opener.opened.isEmpty());
        QVERIFY(entries(downloads.path()).isEmpty());
    }

    void shareMailsLinksOneALineOrTheTextAsTheBody()
    {
        QCOMPARE(DropActions::mailDraft(linkPayload({ QUrl(QStringLiteral("https://example.org/a b")),
                     QUrl(QStringLiteral("mailto:me@example.org")) })),
            (MailDraft { {}, QStringLiteral("https://example.org/a b\nmailto:me@example.org") }));
        QCOMPARE(DropActions::mailDraft(textPayload(QStringLiteral("-- first\n<b>second</b>"))),
            (MailDraft { {}, QStringLiteral("-- first\n<b>second</b>") }));
    }

    void shareOfAnImageOrOfFoldersOnlyMailsNothing()
    {
        QTemporaryDir folder;
        RecordingMailComposer mail;
        QVERIFY(!DropActions::share(imagePayload(), mail));
        QVERIFY(!DropActions::share(filePayload({ folder.path() }), mail));
        QVERIFY(!DropActions::share(DropPayload {}, mail));
        QVERIFY(mail.drafts.isEmpty());
    }

    void shareWithoutAComposerOrSendWithoutAPhoneEndsQuietly()
    {
        FakePasteboard pasteboard;
        RecordingUrlOpener opener;
        QTemporaryDir downloads;
        DropActions::Context context { pasteboard, opener, downloads.path() };
        for (DropAction action : { DropAction::share, DropAction::airDrop }) {
            DropActions::perform(action, textPayload(QStringLiteral("https://example.org")), context);
            DropActions::perform(action, DropPayload {}, context);
        }
        RecordingDeviceSender unreachable;
        unreachable.reachable = false;
        context.devices = &unreachable;
        DropActions::perform(DropAction::airDrop, textPayload(QStringLiteral("hello")), context);
        QVERIFY(unreachable.sent.isEmpty());
        QCOMPARE(pasteboard.changeCount(), 0);
        QVERIFY(opener.opened.isEmpty());
        QVERIFY(entries(downloads.path()).isEmpty());
    }

    void mailComposerArgumentsAreOneArgumentEach()
    {
        // Nothing a name or a text holds is read as an option: every value follows its
        // option as an argument of its own.
        QCOMPARE(XdgMailComposer::arguments(
                     MailDraft { { QStringLiteral("/tmp/a b.txt"), QStringLiteral("/tmp/--body x") }, {} }),
            QStringList({ "--utf8", "--attach", "/tmp/a b.txt", "--attach", "/tmp/--body x" }));
        QCOMPARE(XdgMailComposer::arguments(MailDraft { {}, QStringLiteral("--attach /etc/passwd\n$(id)") }),
            QStringList({ "--utf8", "--body", "--attach /etc/passwd\n$(id)" }));
        XdgMailComposer real;
        QVERIFY(!real.compose(MailDraft {})); // an empty mail is never started
    }

    void sendToDeviceSendsFilesLinksOrText()
    {
        QTemporaryDir folder;
        const QString report = folder.filePath(QStringLiteral("report 1.pdf"));
        QCOMPARE(DropActions::deviceShare(filePayload({ report })),
            (DeviceShare { { QUrl::fromLocalFile(report).toString(QUrl::FullyEncoded) }, {} }));
        QVERIFY(DropActions::deviceShare(filePayload({ report }))
                    .urls.constFirst()
                    .endsWith(QStringLiteral("report%201.pdf")));
        QCOMPARE(DropActions::deviceShare(linkPayload(
                     { QUrl(QStringLiteral("https://example.org/a")), QUrl(QStringLiteral("https://example.org/b")) })),
            (DeviceShare { { "https://example.org/a", "https://example.org/b" }, {} }));
        QCOMPARE(DropActions::deviceShare(textPayload(QStringLiteral("hello"))),
            (DeviceShare { {}, QStringLiteral("hello") }));
        QVERIFY(DropActions::deviceShare(imagePayload()).isEmpty());

        RecordingDeviceSender phone;
        FakePasteboard pasteboard;
        RecordingUrlOpener opener;
        QTemporaryDir downloads;
        DropActions::Context context { pasteboard, opener, downloads.path(), nullptr, &phone };
        DropActions::perform(DropAction::airDrop, filePayload({ report }), context);
        DropActions::perform(DropAction::airDrop, imagePayload(), context);
        QCOMPARE(phone.sent,
            QList<DeviceShare>({ DeviceShare { { QUrl::fromLocalFile(report).toString(QUrl::FullyEncoded) }, {} } }));
    }

    void performDispatches()
    {
        FakePasteboard pasteboard;
        RecordingUrlOpener opener;
        QTemporaryDir downloads;
        DropActions::Context context { pasteboard, opener, downloads.path() };
        const DropPayload payload = textPayload(QStringLiteral("https://example.org"));
        DropActions::perform(DropAction::copy, payload, context);
        DropActions::perform(DropAction::save, payload, context);
        DropActions::perform(DropAction::open, payload, context);
        QCOMPARE(pasteboard.contents()->text(), QStringLiteral("https://example.org"));
        QCOMPARE(entries(downloads.path()), QStringList({ "Dropped.txt" }));
        QCOMPARE(opener.opened.size(), 1);
    }
};

QTEST_MAIN(TestDropActions)
#include "test_drop_actions.moc"
