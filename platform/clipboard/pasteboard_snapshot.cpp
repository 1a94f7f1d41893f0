// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/pasteboard_snapshot.h"

#include <QMimeData>

namespace ledgewise {

QStringList RecordingPasteboard::types() const
{
    if (!m_hasTypes) {
        m_contents.types = m_source.types();
        m_hasTypes = true;
    }
    return m_contents.types;
}

QByteArray RecordingPasteboard::data(const QString &mimeType) const
{
    if (const auto found = m_contents.data.constFind(mimeType); found != m_contents.data.cend())
        return *found;
    const QByteArray bytes = m_source.data(mimeType);
    m_contents.data.insert(mimeType, bytes);
    return bytes;
}

QString RecordingPasteboard::text() const
{
    // Decoded once, here: a text of megabytes takes milliseconds to decode.
    if (!m_contents.text)
        m_contents.text = Pasteboard::text();
    return *m_contents.text;
}

void RecordingPasteboard::setContents(QMimeData *contents)
{
    delete contents;
}

void SnapshotPasteboard::setContents(QMimeData *contents)
{
    delete contents;
}

} // namespace ledgewise
