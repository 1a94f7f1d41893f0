// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/clipboard/clipboard_fetcher.h"
#include "modules/clipboard/clipboard_item.h"
#include "modules/clipboard/history_writer.h"
#include "modules/clipboard/image_encoder.h"

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
// secret. The clipboard is read (where the platform allows), the history file written
// and copied pictures converted on threads of their own; the main thread only decides
// what to keep.
class ClipboardStore : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)

public:
    // No directory: defaultDirectory(). The application passes capacity 50.
    ClipboardStore(Pasteboard &pasteboard, std::optional<QString> storageDirectory, int capacity, bool startMonitoring,
        QObject *parent = nullptr);
    // Finishes the picture being converted and writes the history: nothing shown is lost.
    ~ClipboardStore() override;

    // $XDG_DATA_HOME/Ledgewise, or the temporary folder's Ledgewise.
    static QString defaultDirectory();

    const QList<ClipboardItem> &items() const { return m_items; }
    int count() const { return int(m_items.size()); }
    QString storageDirectory() const { return m_storageDirectory; }
    QString historyPath() const;
    QString imagesDirectory() const;

    QString glanceSnippet() const;
    void togglePin(const QUuid &id);
    void remove(const QUuid &id);
    // Puts an entry back on the clipboard without capturing it again.
    void copyBack(const ClipboardItem &item);
    std::optional<QImage> image(const ClipboardItem &item) const;

    // Whether changes are picked up when the clipboard announces them (true on X11)
    // rather than by the half-second poll.
    bool isPolling() const { return m_pollTimer.isActive(); }

    // Returns once the history as it is now is on disk (or its write failed).
    void flush();
    // False when the history file exists but could not be read (permissions, an I/O
    // error, not a regular file): this session then keeps its history in memory only
    // and never replaces the file.
    bool writesHistory() const { return m_writesHistory; }

signals:
    void itemsChanged();
    // The history file on disk now holds the entries as they were at some change: after
    // the last change, once this has been emitted and no other change followed.
    void historySaved();
    // The store has looked at one new change of the clipboard, whether it kept it or
    // not (a repeat, white space, a secret, our own copy-back, a change already
    // replaced by a newer one). A picture's entry follows once it is converted.
    void pasteboardChecked();

private:
    void beginMonitoring();
    void pollPasteboard();
    void takeFetched();
    // `storedText`: how the text on `clipboard` is stored, when already worked out.
    void ingest(const Pasteboard &clipboard, const std::optional<QString> &storedText = std::nullopt);
    void addText(const QString &stored);
    void storeImage(const QByteArray &data);
    void addFinishedImages(bool announce);
    void add(const ClipboardItem &item);
    void enforceCapacity(qsizetype justAdded = 0);
    void persist();
    void load();
    void removeLeftovers() const;
    void removeImageFile(const std::optional<QString> &fileName) const;

    Pasteboard &m_pasteboard;
    QString m_storageDirectory;
    int m_capacity;
    QList<ClipboardItem> m_items;
    qint64 m_lastChangeCount = -1;
    bool m_isWriting = false;
    // The history file did not decode: it is kept aside once, before the first save.
    bool m_keepUnreadableHistory = false;
    bool m_writesHistory = true;
    QTimer m_pollTimer;
    HistoryWriter m_writer;
    ImageEncoder m_images;
    ClipboardFetcher m_fetcher;
};

} // namespace ledgewise
