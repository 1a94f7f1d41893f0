// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_item.h"

#include <QBuffer>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

namespace ledgewise {

namespace {

// 2001-01-01T00:00:00Z in seconds since the Unix epoch.
constexpr qint64 referenceDateUnixSeconds = 978307200;

std::optional<QString> optionalString(const QJsonObject &object, const char *key, bool &ok)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    if (!value.isString()) {
        ok = false;
        return std::nullopt;
    }
    return value.toString();
}

std::optional<ClipboardItem> decodeItem(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const QJsonValue id = object.value(QLatin1String("id"));
    const QJsonValue createdAt = object.value(QLatin1String("createdAt"));
    const QJsonValue kind = object.value(QLatin1String("kind"));
    const QJsonValue isPinned = object.value(QLatin1String("isPinned"));
    if (!id.isString() || !createdAt.isDouble() || !kind.isString() || !isPinned.isBool())
        return std::nullopt;
    const QUuid uuid = QUuid::fromString(id.toString());
    const auto itemKind = clipboardKindFromRaw(kind.toString());
    if (uuid.isNull() || id.toString().size() != 36 || !itemKind)
        return std::nullopt;

    bool ok = true;
    ClipboardItem item;
    item.id = uuid;
    item.createdAt = createdAt.toDouble();
    item.kind = *itemKind;
    item.text = optionalString(object, "text", ok);
    item.url = optionalString(object, "url", ok);
    item.imageFileName = optionalString(object, "imageFileName", ok);
    item.isPinned = isPinned.toBool();
    if (!ok)
        return std::nullopt;
    return item;
}

// `text` as a JSON string: UTF-8, with quotes, backslashes and control characters
// escaped. A lone surrogate is written as its \u escape, so it reads back as it was.
void appendJsonString(QByteArray &out, QStringView text)
{
    static constexpr char hex[] = "0123456789abcdef";
    const qsizetype start = out.size();
    // At most six bytes a UTF-16 unit (an escape), plus the quotes.
    out.resize(start + text.size() * 6 + 2);
    char *p = out.data() + start;
    const auto escape = [&p](char16_t unit) {
        *p++ = '\\';
        *p++ = 'u';
        for (int shift = 12; shift >= 0; shift -= 4)
            *p++ = hex[(unit >> shift) & 0xf];
    };
    *p++ = '"';
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit >= 0x20 && unit < 0x80 && unit != '"' && unit != '\\') {
            *p++ = char(unit);
        } else if (unit < 0x80) {
            *p++ = '\\';
            switch (unit) {
            case '"':
                *p++ = '"';
                break;
            case '\\':
                *p++ = '\\';
                break;
            case '\b':
                *p++ = 'b';
                break;
            case '\f':
                *p++ = 'f';
                break;
            case '\n':
                *p++ = 'n';
                break;
            case '\r':
                *p++ = 'r';
                break;
            case '\t':
                *p++ = 't';
                break;
            default:
                --p;
                escape(unit);
            }
        } else if (unit < 0x800) {
            *p++ = char(0xc0 | (unit >> 6));
            *p++ = char(0x80 | (unit & 0x3f));
        } else if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            const char32_t code = QChar::surrogateToUcs4(unit, text[++i].unicode());
            *p++ = char(0xf0 | (code >> 18));
            *p++ = char(0x80 | ((code >> 12) & 0x3f));
            *p++ = char(0x80 | ((code >> 6) & 0x3f));
            *p++ = char(0x80 | (code & 0x3f));
        } else if (QChar::isSurrogate(unit)) {
            escape(unit);
        } else {
            *p++ = char(0xe0 | (unit >> 12));
            *p++ = char(0x80 | ((unit >> 6) & 0x3f));
            *p++ = char(0x80 | (unit & 0x3f));
        }
    }
    *p++ = '"';
    out.resize(p - out.data());
}

} // namespace

QString rawValue(ClipboardKind kind)
{
    switch (kind) {
    case ClipboardKind::text:
        return QStringLiteral("text");
    case ClipboardKind::url:
        return QStringLiteral("url");
    case ClipboardKind::image:
        return QStringLiteral("image");
    }
    return {};
}

std::optional<ClipboardKind> clipboardKindFromRaw(const QString &raw)
{
    for (ClipboardKind kind : { ClipboardKind::text, ClipboardKind::url, ClipboardKind::image }) {
        if (rawValue(kind) == raw)
            return kind;
    }
    return std::nullopt;
}

double secondsSinceReferenceDate(qint64 msecsSinceEpoch)
{
    return double(msecsSinceEpoch) / 1000.0 - double(referenceDateUnixSeconds);
}

double nowSinceReferenceDate()
{
    return secondsSinceReferenceDate(QDateTime::currentMSecsSinceEpoch());
}

QByteArray encodeHistory(const QList<ClipboardItem> &items)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeHistory(buffer, items);
    return bytes;
}

bool writeHistory(QIODevice &device, const QList<ClipboardItem> &items)
{
    if (device.write("[", 1) != 1)
        return false;
    QByteArray entry;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const ClipboardItem &item = items[i];
        entry.clear();
        if (i > 0)
            entry += ',';
        entry += "{\"id\":";
        appendJsonString(entry, item.id.toString(QUuid::WithoutBraces).toUpper());
        entry += ",\"createdAt\":";
        // JSON has no infinities: such a time would make the whole file unreadable.
        entry += QByteArray::number(
            std::isfinite(item.createdAt) ? item.createdAt : 0.0, 'g', QLocale::FloatingPointShortest);
        entry += ",\"kind\":";
        appendJsonString(entry, rawValue(item.kind));
        if (item.text) {
            entry += ",\"text\":";
            appendJsonString(entry, *item.text);
        }
        if (item.url) {
            entry += ",\"url\":";
            appendJsonString(entry, *item.url);
        }
        if (item.imageFileName) {
            entry += ",\"imageFileName\":";
            appendJsonString(entry, *item.imageFileName);
        }
        entry += item.isPinned ? ",\"isPinned\":true}" : ",\"isPinned\":false}";
        if (device.write(entry) != entry.size())
            return false;
    }
    return device.write("]", 1) == 1;
}

std::optional<QList<ClipboardItem>> decodeHistory(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    QList<ClipboardItem> items;
    for (const QJsonValue &value : document.array()) {
        const auto item = decodeItem(value);
        if (!item)
            return std::nullopt;
        items.append(*item);
    }
    return items;
}

} // namespace ledgewise
