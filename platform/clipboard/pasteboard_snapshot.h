// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/pasteboard.h"

#include <QHash>

#include <optional>

namespace ledgewise {

// What was read of the clipboard at one moment: the types offered and the bytes of
// those that were asked for.
struct PasteboardContents {
    QStringList types;
    QHash<QString, QByteArray> data;
    std::optional<QString> text; // decoded where it was read, when it was asked for
};

// Reads through to another pasteboard and keeps everything read, so the same
// questions can be answered again later, elsewhere, without the clipboard.
class RecordingPasteboard final : public Pasteboard
{
    Q_OBJECT

public:
    explicit RecordingPasteboard(const Pasteboard &source)
        : m_source(source)
    { }

    PasteboardContents contents() const { return m_contents; }

    qint64 changeCount() const override { return m_source.changeCount(); }
    bool announcesChanges() const override { return false; }
    QStringList types() const override;
    QByteArray data(const QString &mimeType) const override;
    QString text() const override;
    void clearContents() override { }
    void setContents(QMimeData *contents) override;

private:
    const Pasteboard &m_source;
    mutable bool m_hasTypes = false;
    mutable PasteboardContents m_contents;
};

// Answers from what a RecordingPasteboard kept; a type that was not read has no bytes.
class SnapshotPasteboard final : public Pasteboard
{
    Q_OBJECT

public:
    explicit SnapshotPasteboard(PasteboardContents contents)
        : m_contents(std::move(contents))
    { }

    qint64 changeCount() const override { return 0; }
    bool announcesChanges() const override { return false; }
    QStringList types() const override { return m_contents.types; }
    QByteArray data(const QString &mimeType) const override { return m_contents.data.value(mimeType); }
    QString text() const override { return m_contents.text ? *m_contents.text : Pasteboard::text(); }
    void clearContents() override { }
    void setContents(QMimeData *contents) override;

private:
    PasteboardContents m_contents;
};

} // namespace ledgewise
