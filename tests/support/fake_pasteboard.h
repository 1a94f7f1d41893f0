// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/pasteboard.h"

#include <QMap>
#include <QMimeData>

#include <memory>

namespace ledgewise {

// An in-memory clipboard. `announce` chooses whether changes are signalled (as on
// X11) or only counted (as where a reader has to poll).
class FakePasteboard final : public Pasteboard
{
    Q_OBJECT

public:
    explicit FakePasteboard(bool announce = true)
        : m_announce(announce)
    { }

    qint64 changeCount() const override { return m_changeCount; }
    bool announcesChanges() const override { return m_announce; }
    QStringList types() const override
    {
        QStringList types = m_raw.keys();
        if (m_contents)
            types += m_contents->formats();
        return types;
    }
    QByteArray data(const QString &mimeType) const override
    {
        if (m_raw.contains(mimeType))
            return m_raw.value(mimeType);
        return m_contents ? m_contents->data(mimeType) : QByteArray();
    }
    void clearContents() override
    {
        m_contents.reset();
        m_raw.clear();
        ++clears;
        changedByUs();
    }
    void setContents(QMimeData *contents) override
    {
        m_contents.reset(contents);
        m_raw.clear();
        changedByUs();
    }

    // Another application copies something.
    void copyFromElsewhere(QMimeData *contents)
    {
        m_contents.reset(contents);
        m_raw.clear();
        changedByUs();
    }

    // Another application offers exactly these bytes (QMimeData would normalise some
    // types, such as URI lists).
    void offerFromElsewhere(const QMap<QString, QByteArray> &raw)
    {
        m_contents.reset();
        m_raw = raw;
        changedByUs();
    }

    const QMimeData *contents() const { return m_contents.get(); }
    int clears = 0;

private:
    void changedByUs()
    {
        ++m_changeCount;
        if (m_announce)
            emit changed();
    }

    bool m_announce;
    qint64 m_changeCount = 0;
    std::unique_ptr<QMimeData> m_contents;
    QMap<QString, QByteArray> m_raw;
};

} // namespace ledgewise
