#include "modules/clipboard/clipboard_store.h"

#include "modules/clipboard/clipboard_rules.h"
#include "platform/clipboard/pasteboard.h"
#include "platform/xdg/standard_folders.h"

#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QSaveFile>

namespace ledgewise {

namespace {

constexpr auto historyFileName = "clipboard.json";
constexpr auto imagesFolderName = "clipboard-images";
constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder = ownerOnly | QFileDevice::ExeOwner;

// What people copy is private: folders 0700, files 0600.
void makePrivateFolder(const QString &path)
{
    QDir().mkpath(path);
    QFile::setPermissions(path, ownerOnlyFolder);
}

bool writePrivateFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(ownerOnly);
    file.write(bytes);
    return file.commit();
}

} // namespace

ClipboardStore::ClipboardStore(Pasteboard &pasteboard, std::optional<QString> storageDirectory, int capacity,
                               bool startMonitoring, QObject *parent)
    : QObject(parent)
    , m_pasteboard(pasteboard)
    , m_storageDirectory(storageDirectory.value_or(defaultDirectory()))
    , m_capacity(capacity)
{
    makePrivateFolder(m_storageDirectory);
    makePrivateFolder(imagesDirectory());
    load();

    m_pollTimer.setInterval(500);
    m_pollTimer.setTimerType(Qt::CoarseTimer);
    connect(&m_pollTimer, &QTimer::timeout, this, &ClipboardStore::pollPasteboard);
    if (startMonitoring)
        beginMonitoring();
}

ClipboardStore::~ClipboardStore() = default;

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
    QFile file(historyPath());
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (auto decoded = decodeHistory(file.readAll()))
        m_items = std::move(*decoded);
    else
        m_keepUnreadableHistory = true;
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
    if (!m_isWriting)
        ingest();
    emit pasteboardChecked();
}

void ClipboardStore::ingest()
{
    if (ClipboardRules::isSecret(m_pasteboard))
        return;
    const Capture capture = ClipboardRules::classify(m_pasteboard, m_items);
    switch (capture.kind) {
    case Capture::Kind::nothing:
        return;
    case Capture::Kind::link:
        add(ClipboardItem{QUuid::createUuid(), nowSinceReferenceDate(), ClipboardKind::url, std::nullopt,
                          capture.value, std::nullopt, false});
        return;
    case Capture::Kind::text:
        addText(capture.value);
        return;
    case Capture::Kind::image:
        storeImage(capture.imageData);
        return;
    }
}

void ClipboardStore::addText(const QString &text)
{
    const QString stored = ClipboardRules::storedText(text);
    if (stored.isEmpty())
        return;
    add(ClipboardItem{QUuid::createUuid(), nowSinceReferenceDate(), ClipboardKind::text, stored, std::nullopt,
                      std::nullopt, false});
}

void ClipboardStore::storeImage(const QByteArray &data)
{
    const auto png = ClipboardRules::pngData(data);
    if (!png)
        return;
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
    if (!writePrivateFile(QDir(imagesDirectory()).filePath(name), *png))
        return;
    add(ClipboardItem{QUuid::createUuid(), nowSinceReferenceDate(), ClipboardKind::image, std::nullopt,
                      std::nullopt, name, false});
}

void ClipboardStore::add(const ClipboardItem &item)
{
    m_items.removeIf([&item](const ClipboardItem &existing) { return existing.id == item.id; });
    m_items.prepend(item);
    enforceCapacity();
    persist();
    emit itemsChanged();
}

void ClipboardStore::enforceCapacity()
{
    while (const auto index = ClipboardRules::nextToEvict(m_items, m_capacity)) {
        removeImageFile(m_items[*index].imageFileName);
        m_items.removeAt(*index);
    }
}

void ClipboardStore::persist()
{
    const QString path = historyPath();
    if (m_keepUnreadableHistory) {
        // One generation of a history that did not decode is kept, so a bad byte
        // never costs anyone their history.
        m_keepUnreadableHistory = false;
        const QString aside = path + QStringLiteral(".unreadable");
        QFile::remove(aside);
        QFile::rename(path, aside);
    }
    writePrivateFile(path, encodeHistory(m_items));
}

void ClipboardStore::pin(const QUuid &id)
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
    const auto found = std::find_if(m_items.cbegin(), m_items.cend(), [&id](const auto &item) { return item.id == id; });
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
            data->setUrls({QUrl::fromEncoded(item.url->toUtf8())});
            hasContent = true;
        }
        break;
    case ClipboardKind::image:
        if (item.imageFileName && ClipboardRules::isPlainFileName(*item.imageFileName)) {
            QFile file(QDir(imagesDirectory()).filePath(*item.imageFileName));
            if (file.open(QIODevice::ReadOnly)) {
                const QByteArray png = file.readAll();
                data->setData(QStringLiteral("image/png"), png);
                QImage decoded;
                if (decoded.loadFromData(png))
                    data->setImageData(decoded);
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
