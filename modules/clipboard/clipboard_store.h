#pragma once

#include "modules/clipboard/clipboard_item.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <optional>

namespace ledgewise {

class Pasteboard;

// The private history of what the user copies: text, web links and images, newest
// first, kept on disk in "clipboard.json" with the images beside it. Captures every
// change of the clipboard except its own writes and what a password manager marks
// secret.
class ClipboardStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)

public:
    // No directory: defaultDirectory(). The application passes capacity 50.
    ClipboardStore(Pasteboard &pasteboard, std::optional<QString> storageDirectory, int capacity,
                   bool startMonitoring, QObject *parent = nullptr);
    ~ClipboardStore() override;

    // $XDG_DATA_HOME/Ledgewise, or the temporary folder's Ledgewise.
    static QString defaultDirectory();

    const QList<ClipboardItem> &items() const { return m_items; }
    int count() const { return int(m_items.size()); }
    QString storageDirectory() const { return m_storageDirectory; }
    QString historyPath() const;
    QString imagesDirectory() const;

    QString glanceSnippet() const;
    void pin(const QUuid &id);
    void remove(const QUuid &id);
    // Puts an entry back on the clipboard without capturing it again.
    void copyBack(const ClipboardItem &item);
    std::optional<QImage> image(const ClipboardItem &item) const;

    // Whether changes are picked up when the clipboard announces them (true on X11)
    // rather than by the half-second poll.
    bool isPolling() const { return m_pollTimer.isActive(); }

signals:
    void itemsChanged();
    // The store has looked at one new change of the clipboard, whether it kept it or
    // not (a repeat, white space, a secret, our own copy-back).
    void pasteboardChecked();

private:
    void beginMonitoring();
    void pollPasteboard();
    void ingest();
    void addText(const QString &text);
    void storeImage(const QByteArray &data);
    void add(const ClipboardItem &item);
    void enforceCapacity();
    void persist();
    void load();
    void removeImageFile(const std::optional<QString> &fileName) const;

    Pasteboard &m_pasteboard;
    QString m_storageDirectory;
    int m_capacity;
    QList<ClipboardItem> m_items;
    qint64 m_lastChangeCount = -1;
    bool m_isWriting = false;
    // The history file did not decode: it is kept aside once, before the first save.
    bool m_keepUnreadableHistory = false;
    QTimer m_pollTimer;
};

} // namespace ledgewise
