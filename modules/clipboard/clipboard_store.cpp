// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_store.h"

#include "modules/clipboard/clipboard_rules.h"
#include "platform/clipboard/pasteboard.h"
#include "platform/clipboard/pasteboard_snapshot.h"
#include "platform/xdg/standard_folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>

namespace ledgewise {

namespace {

constexpr auto historyFileName = "clipboard.json";
constexpr auto imagesFolderName = "clipboard-images";
constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder = ownerOnly | QFileDevice::ExeOwner;

// A picture put back on the clipboard: its PNG bytes as stored, and the picture itself
// for applications that ask for another image type, decoded only then (and once), not
// on the main thread at the click.
class StoredPicture final : public QMimeData
{
public:
    explicit StoredPicture(QByteArray png)
        : m_png(std::move(png))
    { }

    QStringList formats() const override
    {
        return { QStringLiteral("image/png"), QStringLiteral("application/x-qt-image") };
    }
    bool hasFormat(const QString &type) const override { return formats().contains(type); }

protected:
    QVariant retrieveData(const QString &type, QMetaType) const override
    {
        if (type == QLatin1String("image/png"))
            return m_png;
        if (type != QLatin1String("application/x-qt-image"))
            return {};
        if (!m_decoded)
            m_decoded = QImage::fromData(m_png, "PNG");
        return m_decoded->isNull() ? QVariant() : QVariant(*m_decoded);
    }

private:
    QByteArray m_png;
    mutable std::optional<QImage> m_decoded;
};

// What people copy is private: folders 0700, files 0600.
void makePrivateFolder(const QString &path)
{
    QDir().mkpath(path);
    QFile::setPermissions(path, ownerOnlyFolder);
}

} // namespace

ClipboardStore::ClipboardStore(Pasteboard &pasteboard, std::optional<QString> storageDirectory, int capacity,
    bool startMonitoring, QObject *parent)
    : QObject(parent)
    , m_pasteboard(pasteboard)
    , m_storageDirectory(storageDirectory.value_or(defaultDirectory()))
    , m_capacity(capacity)
    , m_writer(QDir(m_storageDirectory).filePath(QLatin1String(historyFileName)))
    , m_images(QDir(m_storageDirectory).filePath(QLatin1String(imagesFolderName)))
    , m_fetcher(pasteboard.backgroundReader())
{
    makePrivateFolder(m_storageDirectory);
    makePrivateFolder(imagesDirectory());
    load();
    if (m_writesHistory)
        removeLeftovers();
    connect(&m_writer, &HistoryWriter::saved, this, &ClipboardStore::historySaved);
    connect(&m_images, &ImageEncoder::finished, this, [this] { addFinishedImages(true); });
    connect(&m_fetcher, &ClipboardFetcher::fetched, this, &ClipboardStore::takeFetched);

    m_pollTimer.setInterval(500);
    m_pollTimer.setTimerType(Qt::CoarseTimer);
    connect(&m_pollTimer, &QTimer::timeout, this, &ClipboardStore::pollPasteboard);
    if (startMonitoring)
        beginMonitoring();
}

ClipboardStore::~ClipboardStore()
{
    m_pollTimer.stop();
    // The picture in hand is finished and kept (pictures not started are dropped), then
    // the history is written before anything goes away.
    m_images.stop();
    addFinishedImages(false);
    m_writer.flush();
}

void ClipboardStore::flush()
{
    m_writer.flush();
}

QString ClipboardStore::defaultDirectory()
{
    return StandardFolders::applicationData();
}

QString ClipboardStore::historyPath() const
{
    return QDir(m_storageDirectory).filePath(QLatin1String(historyFileName));
}

QString ClipboardStore::imagesDirectory() const
{
    return QDir(m_storageDirectory).filePath(QLatin1String(imagesFolderName));
}

void ClipboardStore::load()
{
    const QString path = historyPath();
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return; // no history yet
    // Anything but a regular file (a folder, a pipe that would block the read) is left
    // alone like a file we may not read.
    QString problem;
    QByteArray bytes;
    if (!info.isFile()) {
        problem = QStringLiteral("not a regular file");
    } else {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            bytes = file.readAll();
        if (file.error() != QFileDevice::NoError)
            problem = file.errorString();
    }
    if (!problem.isEmpty()) {
        // The history may be fine and only out of reach for now: never replace it with
        // this session's copies, and never clean up the pictures it may name.
        m_writesHistory = false;
        qWarning().noquote() << QStringLiteral("Ledgewise: cannot read the clipboard history %1 (%2); this session "
                                               "keeps its copies in memory only and leaves the file as it is.")
                                    .arg(path, problem);
        return;
    }
    if (auto decoded = decodeHistory(bytes))
        m_items = std::move(*decoded);
    else
        m_keepUnreadableHistory = true;
}

void ClipboardStore::removeLeftovers() const
{
    // Temporary files of a save that was interrupted (a crash, a power cut).
    QDir folder(m_storageDirectory);
    const auto anyFile = QDir::Files | QDir::Hidden | QDir::System;
    for (const QString &name : folder.entryList(anyFile)) {
        if (ClipboardRules::isLeftoverSaveFile(name, QLatin1String(historyFileName)))
            folder.remove(name);
    }
    // Pictures no entry names: those of a history that did not decode, and leftovers of
    // pictures whose entry never reached the disk.
    QDir images(imagesDirectory());
    for (const QString &name : ClipboardRules::unreferencedImages(images.entryList(anyFile), m_items))
        images.remove(name);
}

void ClipboardStore::beginMonitoring()
{
    m_pollTimer.stop();
    disconnect(&m_pasteboard, &Pasteboard::changed, this, nullptr);
    // Whatever is on the clipboard now was copied before we looked: never captured.
    m_lastChangeCount = m_pasteboard.changeCount();
    if (m_pasteboard.announcesChanges())
        connect(&m_pasteboard, &Pasteboard::changed, this, &ClipboardStore::pollPasteboard);
    else
        m_pollTimer.start();
}

void ClipboardStore::pollPasteboard()
{
    const qint64 count = m_pasteboard.changeCount();
    if (count == m_lastChangeCount)
        return;
    // The counter moves on first, so our own writes are swallowed here too.
    m_lastChangeCount = count;
    if (!m_isWriting && m_fetcher.isAvailable()) {
        m_fetcher.fetch(count); // looked at when the read is back
        return;
    }
    if (!m_isWriting)
        ingest(m_pasteboard);
    emit pasteboardChecked();
}

void ClipboardStore::takeFetched()
{
    for (const ClipboardFetcher::Fetched &fetched : m_fetcher.takeFetched()) {
        // Only a read of the newest change counts: after it another application copied
        // again (its own read follows) or we copied an entry back (never captured).
        if (fetched.changeCount == m_lastChangeCount) {
            if (fetched.contents)
                ingest(SnapshotPasteboard(*fetched.contents), fetched.storedText);
            else
                ingest(m_pasteboard);
        }
        emit pasteboardChecked();
    }
}

void ClipboardStore::ingest(const Pasteboard &clipboard, const std::optional<QString> &storedText)
{
    if (ClipboardRules::isSecret(clipboard))
        return;
    const Capture capture = ClipboardRules::classify(clipboard, m_items);
    switch (capture.kind) {
    case Capture::Kind::nothing:
        return;
    case Capture::Kind::link:
        add(ClipboardItem { QUuid::createUuid(), nowSinceReferenceDate(), ClipboardKind::url, std::nullopt,
            capture.value, std::nullopt, false });
        return;
    case Capture::Kind::text:
        addText(storedText ? *storedText : ClipboardRules::storedText(capture.value));
        return;
    case Capture::Kind::image:
        storeImage(capture.imageData);
        return;
    }
}

void ClipboardStore::addText(const QString &stored)
{
    if (stored.isEmpty())
        return;
    add(ClipboardItem {
        QUuid::createUuid(), nowSinceReferenceDate(), ClipboardKind::text, stored, std::nullopt, std::nullopt, false });
}

void ClipboardStore::storeImage(const QByteArray &data)
{
    // Converted on the encoder's thread; the entry is added when its file is written.
    m_images.encode(data, nowSinceReferenceDate(), m_items.isEmpty() ? QUuid() : m_items.constFirst().id);
}

void ClipboardStore::addFinishedImages(bool announce)
{
    const QList<ImageEncoder::Finished> finished = m_images.takeFinished();
    if (finished.isEmpty())
        return;
    for (const ImageEncoder::Finished &image : finished) {
        // Below whatever was copied after the picture, so the history keeps the order
        // of the copies however long the picture took.
        const qsizetype at = ClipboardRules::insertionIndex(m_items, image.newestThen, image.capturedAt);
        m_items.insert(at,
            ClipboardItem { QUuid::createUuid(), image.capturedAt, ClipboardKind::image, std::nullopt, std::nullopt,
                image.fileName, false });
        enforceCapacity(at);
    }
    persist();
    if (announce)
        emit itemsChanged();
}

void ClipboardStore::add(const ClipboardItem &item)
{
    m_items.removeIf([&item](const ClipboardItem &existing) { return existing.id == item.id; });
    m_items.prepend(item);
    enforceCapacity();
    persist();
    emit itemsChanged();
}

void ClipboardStore::enforceCapacity(qsizetype justAdded)
{
    while (const auto index = ClipboardRules::nextToEvict(m_items, m_capacity, justAdded)) {
        removeImageFile(m_items[*index].imageFileName);
        m_items.removeAt(*index);
        if (*index < justAdded)
            --justAdded;
    }
}

void ClipboardStore::persist()
{
    if (!m_writesHistory)
        return;
    if (m_keepUnreadableHistory) {
        // One generation of a history that did not decode is kept, so a bad byte
        // never costs anyone their history. Nothing has been written yet, so no write
        // on the writer's thread can race this.
        m_keepUnreadableHistory = false;
        const QString path = historyPath();
        const QString aside = path + QStringLiteral(".unreadable");
        QFile::remove(aside);
        QFile::rename(path, aside);
    }
    // Only the list is handed over (its texts are shared, not copied); encoding and
    // writing happen on the writer's thread.
    m_writer.save(m_items);
}

void ClipboardStore::togglePin(const QUuid &id)
{
    for (ClipboardItem &item : m_items) {
        if (item.id == id) {
            item.isPinned = !item.isPinned;
            persist();
            emit itemsChanged();
            return;
        }
    }
}

void ClipboardStore::remove(const QUuid &id)
{
    const auto found
        = std::find_if(m_items.cbegin(), m_items.cend(), [&id](const auto &item) { return item.id == id; });
    if (found == m_items.cend())
        return;
    removeImageFile(found->imageFileName);
    m_items.removeIf([&id](const ClipboardItem &item) { return item.id == id; });
    persist();
    emit itemsChanged();
}

void ClipboardStore::copyBack(const ClipboardItem &item)
{
    m_isWriting = true;
    m_pasteboard.clearContents();
    auto data = std::make_unique<QMimeData>();
    bool hasContent = false;
    switch (item.kind) {
    case ClipboardKind::text:
        if (item.text) {
            data->setText(*item.text);
            hasContent = true;
        }
        break;
    case ClipboardKind::url:
        if (item.url) {
            data->setText(*item.url);
            data->setUrls({ QUrl::fromEncoded(item.url->toUtf8()) });
            hasContent = true;
        }
        break;
    case ClipboardKind::image:
        if (item.imageFileName && ClipboardRules::isPlainFileName(*item.imageFileName)) {
            QFile file(QDir(imagesDirectory()).filePath(*item.imageFileName));
            if (file.open(QIODevice::ReadOnly)) {
                data = std::make_unique<StoredPicture>(file.readAll());
                hasContent = true;
            }
        }
        break;
    }
    if (hasContent)
        m_pasteboard.setContents(data.release());
    // Our own write is not a copy the user made.
    m_lastChangeCount = m_pasteboard.changeCount();
    m_isWriting = false;
}

std::optional<QImage> ClipboardStore::image(const ClipboardItem &item) const
{
    if (!item.imageFileName || !ClipboardRules::isPlainFileName(*item.imageFileName))
        return std::nullopt;
    QImage image(QDir(imagesDirectory()).filePath(*item.imageFileName));
    if (image.isNull())
        return std::nullopt;
    return image;
}

QString ClipboardStore::glanceSnippet() const
{
    return ClipboardRules::glanceSnippet(m_items);
}

void ClipboardStore::removeImageFile(const std::optional<QString> &fileName) const
{
    if (fileName && ClipboardRules::isPlainFileName(*fileName))
        QFile::remove(QDir(imagesDirectory()).filePath(*fileName));
}

} // namespace ledgewise
