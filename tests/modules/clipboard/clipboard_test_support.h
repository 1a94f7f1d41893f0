// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QtEndian>

namespace ledgewise::testing {

inline QMimeData *textData(const QString &text)
{
    auto *data = new QMimeData;
    data->setText(text);
    return data;
}

// A picture of one colour, encoded in `format` ("PNG", "TIFF").
inline QByteArray imageOf(const QColor &color, const char *format, QSize size = QSize(4, 4))
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

inline QByteArray pngOf(const QColor &color, QSize size = QSize(4, 4))
{
    return imageOf(color, "PNG", size);
}

// Only a PNG signature and header: says it is width x height without the pixels.
inline QByteArray pngHeaderOnly(quint32 width, quint32 height)
{
    QByteArray bytes("\x89PNG\r\n\x1a\n", 8);
    QByteArray chunk(4 + 4 + 13 + 4, '\0');
    qToBigEndian<quint32>(13, chunk.data());
    chunk.replace(4, 4, "IHDR");
    qToBigEndian<quint32>(width, chunk.data() + 8);
    qToBigEndian<quint32>(height, chunk.data() + 12);
    chunk[16] = 8; // bit depth
    chunk[17] = 6; // colour type RGBA
    return bytes + chunk;
}

inline QJsonArray historyOnDisk(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).array();
}

} // namespace ledgewise::testing
