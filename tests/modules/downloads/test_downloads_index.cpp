// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_index.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <map>

using namespace ledgewise;

namespace {

using Folder = std::map<QByteArray, FileFacts>;

// The newest names of a folder the slow, obvious way: later first, equal times by name.
QList<QByteArray> newestOf(const Folder &folder)
{
    std::vector<std::pair<QByteArray, FileFacts>> files;
    for (const auto &[name, facts] : folder) {
        if (DownloadRules::isListedName(name))
            files.emplace_back(name, facts);
    }
    std::sort(files.begin(), files.end(), [](const auto &a, const auto &b) {
        return a.second.modifiedNs != b.second.modifiedNs ? a.second.modifiedNs > b.second.modifiedNs
                                                          : a.first < b.first;
    });
    QList<QByteArray> names;
    for (const auto &file : files) {
        if (names.size() == DownloadRules::maximumItems)
            break;
        names.append(file.first);
    }
    return names;
}

QHash<QByteArray, FileFacts> listing(const Folder &folder)
{
    QHash<QByteArray, FileFacts> files;
    for (const auto &[name, facts] : folder)
        files.insert(name, facts);
    return files;
}

} // namespace

class TestDownloadsIndex : public QObject
{
    Q_OBJECT

private slots:
    void singleChangesKeepTheSameNewestAsAFullListing()
    {
        // Files appear, grow, get older or newer (a touch), vanish; after each change
        // the index kept step by step agrees with a fresh look at everything.
        QRandomGenerator random(20261123);
        Folder folder;
        for (int i = 0; i < 40; ++i)
            folder[QByteArray("f") + QByteArray::number(i)] = { i, qint64(random.bounded(100)) };
        DownloadsIndex index = DownloadsIndex::fromListing(listing(folder), DownloadsIndex());
        QCOMPARE(index.newest(), newestOf(folder));
        for (int step = 0; step < 5000; ++step) {
            const QByteArray name = (random.bounded(10) == 0 ? QByteArray(".h") : QByteArray("f"))
                + QByteArray::number(random.bounded(60));
            std::optional<FileFacts> facts;
            if (random.bounded(4) == 0) {
                folder.erase(name);
            } else {
                facts = FileFacts { qint64(random.bounded(1000)), qint64(random.bounded(120)) };
                folder[name] = *facts;
            }
            index.measured(name, facts);
            QCOMPARE(index.newest(), newestOf(folder));
            QCOMPARE(index.count(), qsizetype(std::count_if(folder.begin(), folder.end(), [](const auto &file) {
                return DownloadRules::isListedName(file.first);
            })));
        }
    }

    void aFileIsDownloadingWhenItsSizeChangedAndReadyWhenFirstSeenOrUnchanged()
    {
        DownloadsIndex index;
        QCOMPARE(index.measured("a.part", FileFacts { 100, 1 }), DownloadItem::Status::ready);
        QCOMPARE(index.measured("a.part", FileFacts { 200, 2 }), DownloadItem::Status::downloading);
        QCOMPARE(index.measured("a.part", FileFacts { 200, 3 }), DownloadItem::Status::ready);
        QCOMPARE(index.measured(".hidden", FileFacts { 1, 4 }), std::nullopt);
        QCOMPARE(index.measured("a.part", std::nullopt), std::nullopt);
        QCOMPARE(index.count(), 0);
    }

    void aFullListingComparesSizesWithTheIndexBefore()
    {
        DownloadsIndex before;
        before.measured("same", FileFacts { 10, 1 });
        before.measured("grown", FileFacts { 10, 1 });
        before.measured("gone", FileFacts { 10, 1 });
        QList<QByteArray> downloading;
        DownloadsIndex after = DownloadsIndex::fromListing(
            { { "same", { 10, 1 } }, { "grown", { 20, 2 } }, { "new", { 5, 3 } }, { ".dot", { 1, 4 } } }, before,
            &downloading);
        QCOMPARE(downloading, QList<QByteArray>({ "grown" }));
        QCOMPARE(after.find("grown")->status, DownloadItem::Status::downloading);
        QCOMPARE(after.find("same")->status, DownloadItem::Status::ready);
        QCOMPARE(after.find("new")->status, DownloadItem::Status::ready);
        QVERIFY(!after.find("gone"));
        QVERIFY(!after.find(".dot"));
        QCOMPARE(after.newest(), QList<QByteArray>({ "new", "grown", "same" }));
    }
};

QTEST_GUILESS_MAIN(TestDownloadsIndex)
#include "test_downloads_index.moc"
