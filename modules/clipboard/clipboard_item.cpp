#include "modules/clipboard/clipboard_item.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

} // namespace

QString rawValue(ClipboardKind kind)
{
    switch (kind) {
    case ClipboardKind::text: return QStringLiteral("text");
    case ClipboardKind::url: return QStringLiteral("url");
    case ClipboardKind::image: return QStringLiteral("image");
    }
    return {};
}

std::optional<ClipboardKind> clipboardKindFromRaw(const QString &raw)
{
    for (ClipboardKind kind : {ClipboardKind::text, ClipboardKind::url, ClipboardKind::image}) {
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
    QJsonArray array;
    for (const ClipboardItem &item : items) {
        QJsonObject object;
        object.insert(QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces).toUpper());
        object.insert(QStringLiteral("createdAt"), item.createdAt);
        object.insert(QStringLiteral("kind"), rawValue(item.kind));
        if (item.text)
            object.insert(QStringLiteral("text"), *item.text);
        if (item.url)
            object.insert(QStringLiteral("url"), *item.url);
        if (item.imageFileName)
            object.insert(QStringLiteral("imageFileName"), *item.imageFileName);
        object.insert(QStringLiteral("isPinned"), item.isPinned);
        array.append(object);
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
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
