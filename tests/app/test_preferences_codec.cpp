// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences_codec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <limits>

using namespace ledgewise;

namespace {

const QByteArray defaultJson
    = R"({"placement":"both","animateInterface":true,"showOnExternalMonitors":true,"automaticallyHide":false,)"
      R"("launchAtLogin":false,"style":"pill","width":268,"height":340,"cornerRadius":14,"opacity":1,"spacing":8,)"
      R"("animationSpeed":1,"leftModuleIDs":["clipboard","downloads","timer"],"rightModuleIDs":["launcher"],)"
      R"("hasCompletedOnboarding":false,"offsetFromNotch":8,"offsetFromEdge":80,"launcherItems":[]})";

const char *const allKeys[] = { "placement", "animateInterface", "showOnExternalMonitors", "automaticallyHide",
    "launchAtLogin", "style", "width", "height", "cornerRadius", "opacity", "spacing", "animationSpeed",
    "leftModuleIDs", "rightModuleIDs", "hasCompletedOnboarding", "offsetFromNotch", "offsetFromEdge", "launcherItems" };

QJsonObject defaultObject()
{
    return QJsonDocument::fromJson(defaultJson).object();
}

QByteArray jsonOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject objectWithItem(const QJsonObject &item)
{
    QJsonObject object = defaultObject();
    object.insert(QStringLiteral("launcherItems"), QJsonArray { item });
    return object;
}

QJsonObject siteItem()
{
    return QJsonObject { { "id", "E621E1F8-C36C-495A-93FC-0C247A3E6E5F" }, { "title", "example.org" },
        { "kind", "website" }, { "urlString", "https://example.org" } };
}

} // namespace

class TestPreferencesCodec : public QObject
{
    Q_OBJECT

private slots:
    void defaultRecordIsWrittenCompactInFieldOrder()
    {
        QCOMPARE(encodePreferences(Preferences::defaults()).value(), defaultJson);
    }

    void defaultRecordRoundTrips()
    {
        const auto decoded = decodePreferences(encodePreferences(Preferences::defaults()).value());
        QVERIFY(decoded);
        QVERIFY(*decoded == Preferences::defaults());
    }

    void launcherItemsOfEveryKindRoundTrip()
    {
        Preferences p;
        p.style = NotchStyle::classic;
        p.width = 300.25;
        p.opacity = 0.1 + 0.2; // not exactly 0.3: the text must carry every bit
        p.launcherItems = {
            { QUuid::createUuid(), QStringLiteral("Files"), LauncherItem::Kind::application,
                QByteArray("\x00\x01path\xff", 7), std::nullopt },
            { QUuid::createUuid(), QStringLiteral("notes"), LauncherItem::Kind::file, std::nullopt, std::nullopt },
            { QUuid::createUuid(), QStringLiteral("example.org \"quoted\""), LauncherItem::Kind::website, std::nullopt,
                QStringLiteral("https://example.org/ä?x=1") },
        };
        const QByteArray json = encodePreferences(p).value();
        const auto decoded = decodePreferences(json);
        QVERIFY(decoded);
        QVERIFY(*decoded == p);

        // The upper-case canonical id, base64 bytes, and absent optionals left out.
        const QJsonArray items = QJsonDocument::fromJson(json).object().value("launcherItems").toArray();
        const QJsonObject app = items[0].toObject();
        QCOMPARE(app.value("id").toString(), p.launcherItems[0].id.toString(QUuid::WithoutBraces).toUpper());
        QCOMPARE(app.value("bookmarkData").toString(), QStringLiteral("AAFwYXRo/w=="));
        QVERIFY(!app.contains("urlString"));
        QVERIFY(!items[1].toObject().contains("bookmarkData"));
        QVERIFY(!items[1].toObject().contains("urlString"));
        QVERIFY(json.contains(R"({"id":")" + app.value("id").toString().toLatin1()
            + R"(","title":"Files","kind":"application","bookmarkData":"AAFwYXRo/w=="})"));
    }

    void memberOrderIsFieldOrder()
    {
        const QByteArray json = encodePreferences(Preferences::defaults()).value();
        qsizetype last = -1;
        for (const char *key : allKeys) {
            const qsizetype at = json.indexOf(QByteArray("\"") + key + "\":");
            QVERIFY2(at > last, key);
            last = at;
        }
    }

    void everyMissingMemberFailsTheWholeRecord_data()
    {
        QTest::addColumn<QString>("key");
        for (const char *key : allKeys)
            QTest::newRow(key) << QString::fromLatin1(key);
    }
    void everyMissingMemberFailsTheWholeRecord()
    {
        QFETCH(QString, key);
        QJsonObject object = defaultObject();
        object.remove(key);
        QCOMPARE(decodePreferences(jsonOf(object)), std::nullopt);
    }

    void documentWithoutOffsetFromEdgeDoesNotDecode()
    {
        QJsonObject object = defaultObject();
        object.remove("offsetFromEdge");
        object.insert("width", 500);
        QCOMPARE(decodePreferences(jsonOf(object)), std::nullopt);
    }

    void everyMemberOfAnotherTypeFailsTheRecord_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("placement number") << "placement" << QJsonValue(1);
        QTest::newRow("animateInterface number") << "animateInterface" << QJsonValue(1);
        QTest::newRow("showOnExternalMonitors string") << "showOnExternalMonitors" << QJsonValue("true");
        QTest::newRow("automaticallyHide null") << "automaticallyHide" << QJsonValue(QJsonValue::Null);
        QTest::newRow("launchAtLogin number") << "launchAtLogin" << QJsonValue(0);
        QTest::newRow("style bool") << "style" << QJsonValue(true);
        QTest::newRow("width string") << "width" << QJsonValue("268");
        QTest::newRow("height bool") << "height" << QJsonValue(false);
        QTest::newRow("cornerRadius null") << "cornerRadius" << QJsonValue(QJsonValue::Null);
        QTest::newRow("opacity array") << "opacity" << QJsonValue(QJsonArray { 1 });
        QTest::newRow("spacing object") << "spacing" << QJsonValue(QJsonObject {});
        QTest::newRow("animationSpeed string") << "animationSpeed" << QJsonValue("1");
        QTest::newRow("leftModuleIDs string") << "leftModuleIDs" << QJsonValue("clipboard");
        QTest::newRow("leftModuleIDs numbers") << "leftModuleIDs" << QJsonValue(QJsonArray { 1, 2 });
        QTest::newRow("rightModuleIDs object") << "rightModuleIDs" << QJsonValue(QJsonObject {});
        QTest::newRow("hasCompletedOnboarding string") << "hasCompletedOnboarding" << QJsonValue("false");
        QTest::newRow("offsetFromNotch null") << "offsetFromNotch" << QJsonValue(QJsonValue::Null);
        QTest::newRow("offsetFromEdge string") << "offsetFromEdge" << QJsonValue("80");
        QTest::newRow("launcherItems object") << "launcherItems" << QJsonValue(QJsonObject {});
        QTest::newRow("launcherItems strings") << "launcherItems" << QJsonValue(QJsonArray { "x" });
    }
    void everyMemberOfAnotherTypeFailsTheRecord()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QJsonObject object = defaultObject();
        object.insert(key, value);
        QCOMPARE(decodePreferences(jsonOf(object)), std::nullopt);
    }

    void enumerationTextsMustBeRawValues_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("placement title") << "placement" << QJsonValue("Both");
        QTest::newRow("placement other") << "placement" << QJsonValue("center");
        QTest::newRow("style title") << "style" << QJsonValue("Pill");
        QTest::newRow("style other") << "style" << QJsonValue("rounded");
        QTest::newRow("style empty") << "style" << QJsonValue("");
        QTest::newRow("module capitalised") << "leftModuleIDs" << QJsonValue(QJsonArray { "Clipboard" });
        QTest::newRow("module words") << "rightModuleIDs" << QJsonValue(QJsonArray { "now playing" });
        QTest::newRow("one bad module among good") << "leftModuleIDs" << QJsonValue(QJsonArray { "timer", "weather" });
    }
    void enumerationTextsMustBeRawValues()
    {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QJsonObject object = defaultObject();
        object.insert(key, value);
        QCOMPARE(decodePreferences(jsonOf(object)), std::nullopt);
    }

    void nowPlayingIsAModuleRawValue()
    {
        QJsonObject object = defaultObject();
        object.insert("rightModuleIDs", QJsonArray { "nowPlaying", "systemStatus" });
        const auto decoded = decodePreferences(jsonOf(object));
        QVERIFY(decoded);
        QCOMPARE(decoded->rightModuleIDs, QList<ModuleID>({ ModuleID::nowPlaying, ModuleID::systemStatus }));
    }

    void emptyLeftListIsValid()
    {
        QJsonObject object = defaultObject();
        object.insert("leftModuleIDs", QJsonArray {});
        object.insert("rightModuleIDs", QJsonArray { "clipboard", "clipboard" });
        const auto decoded = decodePreferences(jsonOf(object));
        QVERIFY(decoded);
        QVERIFY(decoded->leftModuleIDs.isEmpty());
        QCOMPARE(decoded->rightModuleIDs, QList<ModuleID>({ ModuleID::clipboard, ModuleID::clipboard }));
    }

    void sameModuleOnBothSidesIsValid()
    {
        QJsonObject object = defaultObject();
        object.insert("leftModuleIDs", QJsonArray { "timer", "clipboard" });
        object.insert("rightModuleIDs", QJsonArray { "clipboard" });
        const auto decoded = decodePreferences(jsonOf(object));
        QVERIFY(decoded);
        QCOMPARE(decoded->leftModuleIDs, QList<ModuleID>({ ModuleID::timer, ModuleID::clipboard }));
        QCOMPARE(decoded->rightModuleIDs, QList<ModuleID>({ ModuleID::clipboard }));
    }

    void numbersAreTakenAsTheyStand()
    {
        QJsonObject object = defaultObject();
        object.insert("width", 5);
        object.insert("height", 0);
        object.insert("offsetFromNotch", -40);
        object.insert("cornerRadius", -3.5);
        object.insert("opacity", 3);
        object.insert("animationSpeed", -1);
        const auto decoded = decodePreferences(jsonOf(object));
        QVERIFY(decoded);
        QCOMPARE(decoded->width, 5.0);
        QCOMPARE(decoded->height, 0.0);
        QCOMPARE(decoded->offsetFromNotch, -40.0);

        object.insert("width", -120);
        object.insert("height", -1);
        const auto negative = decodePreferences(jsonOf(object));
        QVERIFY(negative);
        QCOMPARE(negative->width, -120.0);
        QCOMPARE(negative->height, -1.0);
        QCOMPARE(decoded->cornerRadius, -3.5);
        QCOMPARE(decoded->opacity, 3.0);
        QCOMPARE(decoded->animationSpeed, -1.0);
    }

    void otherMembersAreIgnored()
    {
        QJsonObject object = defaultObject();
        object.insert("futureSetting", QJsonArray { 1, 2 });
        const auto decoded = decodePreferences(jsonOf(object));
        QVERIFY(decoded);
        QVERIFY(*decoded == Preferences::defaults());
    }

    void launcherItemWithoutOptionalsDecodes()
    {
        QJsonObject item = siteItem();
        item.remove("urlString");
        const auto decoded = decodePreferences(jsonOf(objectWithItem(item)));
        QVERIFY(decoded);
        QCOMPARE(decoded->launcherItems.size(), 1);
        QCOMPARE(decoded->launcherItems[0].bookmarkData, std::nullopt);
        QCOMPARE(decoded->launcherItems[0].urlString, std::nullopt);
        QCOMPARE(
            decoded->launcherItems[0].id, QUuid::fromString(QStringLiteral("E621E1F8-C36C-495A-93FC-0C247A3E6E5F")));
    }

    void badLauncherItemFailsTheWholeRecord_data()
    {
        QTest::addColumn<QJsonObject>("item");
        auto without = [](const char *key) {
            QJsonObject o = siteItem();
            o.remove(key);
            return o;
        };
        auto with = [](const char *key, const QJsonValue &v) {
            QJsonObject o = siteItem();
            o.insert(key, v);
            return o;
        };
        QTest::newRow("no title") << without("title");
        QTest::newRow("no id") << without("id");
        QTest::newRow("no kind") << without("kind");
        QTest::newRow("unknown kind") << with("kind", "folder");
        QTest::newRow("capitalised kind") << with("kind", "Website");
        QTest::newRow("id not a uuid") << with("id", "not-a-uuid");
        QTest::newRow("id with braces") << with("id", "{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}");
        QTest::newRow("id number") << with("id", 7);
        QTest::newRow("title number") << with("title", 7);
        QTest::newRow("bookmark not base64") << with("bookmarkData", "***");
        QTest::newRow("bookmark number") << with("bookmarkData", 12);
        QTest::newRow("url number") << with("urlString", 12);
    }
    void badLauncherItemFailsTheWholeRecord()
    {
        QFETCH(QJsonObject, item);
        QCOMPARE(decodePreferences(jsonOf(objectWithItem(item))), std::nullopt);
    }

    void lowerCaseIdIsRead()
    {
        QJsonObject item = siteItem();
        item.insert("id", "e621e1f8-c36c-495a-93fc-0c247a3e6e5f");
        QVERIFY(decodePreferences(jsonOf(objectWithItem(item))));
    }

    void notAJsonObjectFails_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("array") << QByteArray("[]");
        QTest::newRow("string") << QByteArray("\"both\"");
        QTest::newRow("truncated") << defaultJson.left(defaultJson.size() - 1);
        QTest::newRow("trailing garbage") << defaultJson + "x";
        QTest::newRow("binary") << QByteArray("\x00\xff\xfe", 3);
    }
    void notAJsonObjectFails()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(decodePreferences(bytes), std::nullopt);
    }

    void numberThatJsonCannotHoldFailsTheEncoding()
    {
        Preferences p;
        p.opacity = std::numeric_limits<double>::quiet_NaN();
        QCOMPARE(encodePreferences(p), std::nullopt);
        p.opacity = 1;
        p.width = std::numeric_limits<double>::infinity();
        QCOMPARE(encodePreferences(p), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestPreferencesCodec)
#include "test_preferences_codec.moc"
