// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences_codec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>

#include <cmath>

namespace ledgewise {

namespace {

// QJsonObject sorts its keys, so the object text is assembled member by member to
// keep the field order; each value is still serialised by Qt for exact escaping.
class OrderedObjectWriter
{
public:
    void add(const char *key, const QJsonValue &value)
    {
        m_text += m_text.isEmpty() ? '{' : ',';
        m_text += '"';
        m_text += key;
        m_text += "\":";
        m_text += serialise(value);
    }
    void addRaw(const char *key, const QByteArray &json)
    {
        m_text += m_text.isEmpty() ? '{' : ',';
        m_text += '"';
        m_text += key;
        m_text += "\":";
        m_text += json;
    }
    QByteArray finish() { return m_text.isEmpty() ? QByteArray("{}") : m_text + '}'; }

    static QByteArray serialise(const QJsonValue &value)
    {
        // Wrap the value in an array to let QJsonDocument write it, then strip the brackets.
        const QByteArray wrapped = QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact);
        return wrapped.mid(1, wrapped.size() - 2);
    }

private:
    QByteArray m_text;
};

QString uuidText(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

QByteArray encodeLauncherItem(const LauncherItem &item)
{
    OrderedObjectWriter writer;
    writer.add("id", uuidText(item.id));
    writer.add("title", item.title);
    writer.add("kind", rawValue(item.kind));
    if (item.bookmarkData)
        writer.add("bookmarkData", QString::fromLatin1(item.bookmarkData->toBase64()));
    if (item.urlString)
        writer.add("urlString", *item.urlString);
    return writer.finish();
}

QByteArray encodeModuleIDs(const QList<ModuleID> &ids)
{
    QJsonArray array;
    for (ModuleID id : ids)
        array.append(rawValue(id));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QUuid> decodeUuid(const QString &text)
{
    // Canonical 8-4-4-4-12 hexadecimal form only (either case); no braces.
    static const QRegularExpression canonical(
        QStringLiteral("^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$"));
    if (!canonical.match(text).hasMatch())
        return std::nullopt;
    return QUuid::fromString(text);
}

std::optional<QByteArray> decodeBase64(const QString &text)
{
    const auto result = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    if (!result || text.size() % 4 != 0)
        return std::nullopt;
    return *result;
}

std::optional<LauncherItem> decodeLauncherItem(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    const QJsonValue id = object.value(QLatin1String("id"));
    const QJsonValue title = object.value(QLatin1String("title"));
    const QJsonValue kind = object.value(QLatin1String("kind"));
    if (!id.isString() || !title.isString() || !kind.isString())
        return std::nullopt;

    LauncherItem item;
    const auto uuid = decodeUuid(id.toString());
    const auto itemKind = launcherKindFromRaw(kind.toString());
    if (!uuid || !itemKind)
        return std::nullopt;
    item.id = *uuid;
    item.title = title.toString();
    item.kind = *itemKind;

    // A missing key or null reads as absent; anything else must have the right type.
    const QJsonValue bookmark = object.value(QLatin1String("bookmarkData"));
    if (!bookmark.isUndefined() && !bookmark.isNull()) {
        if (!bookmark.isString())
            return std::nullopt;
        const auto bytes = decodeBase64(bookmark.toString());
        if (!bytes)
            return std::nullopt;
        item.bookmarkData = *bytes;
    }
    const QJsonValue url = object.value(QLatin1String("urlString"));
    if (!url.isUndefined() && !url.isNull()) {
        if (!url.isString())
            return std::nullopt;
        item.urlString = url.toString();
    }
    return item;
}

// Required reads: a missing member or one of another JSON type fails the record.
struct StrictReader {
    const QJsonObject &object;
    bool ok = true;

    QJsonValue member(const char *key, QJsonValue::Type type)
    {
        const QJsonValue value = object.value(QLatin1String(key));
        if (value.type() != type)
            ok = false;
        return value;
    }
    bool boolean(const char *key) { return member(key, QJsonValue::Bool).toBool(); }
    double number(const char *key) { return member(key, QJsonValue::Double).toDouble(); }
    QString string(const char *key) { return member(key, QJsonValue::String).toString(); }
    QJsonArray array(const char *key) { return member(key, QJsonValue::Array).toArray(); }

    template <typename E> E enumeration(const char *key, std::optional<E> (*fromRaw)(const QString &))
    {
        const auto value = fromRaw(string(key));
        if (!value)
            ok = false;
        return value.value_or(E {});
    }

    QList<ModuleID> moduleIDs(const char *key)
    {
        QList<ModuleID> ids;
        for (const QJsonValue &element : array(key)) {
            const auto id = element.isString() ? moduleIDFromRaw(element.toString()) : std::nullopt;
            if (!id) {
                ok = false;
                return {};
            }
            ids.append(*id);
        }
        return ids;
    }

    QList<LauncherItem> launcherItems(const char *key)
    {
        QList<LauncherItem> items;
        for (const QJsonValue &element : array(key)) {
            const auto item = decodeLauncherItem(element);
            if (!item) {
                ok = false;
                return {};
            }
            items.append(*item);
        }
        return items;
    }
};

} // namespace

std::optional<QByteArray> encodePreferences(const Preferences &p)
{
    for (double number : { p.width, p.height, p.cornerRadius, p.opacity, p.spacing, p.animationSpeed, p.offsetFromNotch,
             p.offsetFromEdge }) {
        if (!std::isfinite(number))
            return std::nullopt;
    }

    QByteArray items = "[";
    for (qsizetype i = 0; i < p.launcherItems.size(); ++i) {
        if (i > 0)
            items += ',';
        items += encodeLauncherItem(p.launcherItems[i]);
    }
    items += ']';

    OrderedObjectWriter writer;
    writer.add("placement", rawValue(p.placement));
    writer.add("animateInterface", p.animateInterface);
    writer.add("showOnExternalMonitors", p.showOnExternalMonitors);
    writer.add("automaticallyHide", p.automaticallyHide);
    writer.add("launchAtLogin", p.launchAtLogin);
    writer.add("style", rawValue(p.style));
    writer.add("width", p.width);
    writer.add("height", p.height);
    writer.add("cornerRadius", p.cornerRadius);
    writer.add("opacity", p.opacity);
    writer.add("spacing", p.spacing);
    writer.add("animationSpeed", p.animationSpeed);
    writer.addRaw("leftModuleIDs", encodeModuleIDs(p.leftModuleIDs));
    writer.addRaw("rightModuleIDs", encodeModuleIDs(p.rightModuleIDs));
    writer.add("hasCompletedOnboarding", p.hasCompletedOnboarding);
    writer.add("offsetFromNotch", p.offsetFromNotch);
    writer.add("offsetFromEdge", p.offsetFromEdge);
    writer.addRaw("launcherItems", items);
    return writer.finish();
}

std::optional<Preferences> decodePreferences(QByteArrayView json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();

    StrictReader read { object };
    Preferences p;
    p.placement = read.enumeration<NotchPlacement>("placement", notchPlacementFromRaw);
    p.animateInterface = read.boolean("animateInterface");
    p.showOnExternalMonitors = read.boolean("showOnExternalMonitors");
    p.automaticallyHide = read.boolean("automaticallyHide");
    p.launchAtLogin = read.boolean("launchAtLogin");
    p.style = read.enumeration<NotchStyle>("style", notchStyleFromRaw);
    p.width = read.number("width");
    p.height = read.number("height");
    p.cornerRadius = read.number("cornerRadius");
    p.opacity = read.number("opacity");
    p.spacing = read.number("spacing");
    p.animationSpeed = read.number("animationSpeed");
    p.leftModuleIDs = read.moduleIDs("leftModuleIDs");
    p.rightModuleIDs = read.moduleIDs("rightModuleIDs");
    p.hasCompletedOnboarding = read.boolean("hasCompletedOnboarding");
    p.offsetFromNotch = read.number("offsetFromNotch");
    p.offsetFromEdge = read.number("offsetFromEdge");
    p.launcherItems = read.launcherItems("launcherItems");
    if (!read.ok)
        return std::nullopt;
    return p;
}

} // namespace ledgewise
