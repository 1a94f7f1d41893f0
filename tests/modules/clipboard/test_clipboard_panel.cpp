// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_module.h"
#include "tests/modules/clipboard/clipboard_test_support.h"
#include "tests/modules/panel_test_support.h"
#include "tests/support/fake_pasteboard.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWheelEvent>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

struct Fixture {
    Fixture()
        : store(pasteboard, folder.path(), 50, true)
        , module(store)
        , panel(module)
    { }
    void copy(const QString &text) { pasteboard.copyFromElsewhere(textData(text)); }
    QQuickItem *row(int index) const { return panel.item(QStringLiteral("clipboardRow_%1").arg(index)); }

    QTemporaryDir folder;
    FakePasteboard pasteboard;
    ClipboardStore store;
    ClipboardModule module;
    HostedPanel panel;
};

} // namespace

class TestClipboardPanel : public QObject
{
    Q_OBJECT

private slots:
    void emptyHistoryShowsOnlyTheHeaderAndTheHint()
    {
        Fixture f;
        QVERIFY(f.panel.root());
        QCOMPARE(f.panel.text(QStringLiteral("clipboardHeader")), QStringLiteral("Clipboard"));
        QVERIFY(f.panel.visible(QStringLiteral("clipboardEmpty")));
        QCOMPARE(f.panel.text(QStringLiteral("clipboardEmpty")), QStringLiteral("Copies stay on this computer."));
        QCOMPARE(f.panel.item(QStringLiteral("clipboardEmpty"))->opacity(), 0.55);
        QVERIFY(!f.panel.visible(QStringLiteral("clipboardList")));
    }

    void glanceShowsTheNewestEntryAsSoonAsItIsCaptured()
    {
        Fixture f;
        QCOMPARE(f.module.glanceSymbol(), QStringLiteral("clipboard"));
        QCOMPARE(f.module.glanceText(), QStringLiteral("Clipboard"));
        QSignalSpy changes(&f.module, &LedgewiseModule::glanceChanged);
        f.copy(QStringLiteral("first line\nsecond line"));
        QTRY_COMPARE(f.module.glanceText(), QStringLiteral("first line second line"));
        QVERIFY(!f.module.glanceActive());
        QCOMPARE(changes.count(), 1);
    }

    void rowsShowTitleKindAndButtons()
    {
        Fixture f;
        f.copy(QStringLiteral("first line\nsecond line"));
        auto *link = textData(QStringLiteral("Example"));
        link->setUrls({ QUrl(QStringLiteral("https://example.org/")) });
        f.pasteboard.copyFromElsewhere(link);
        QTRY_VERIFY(f.row(1));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("https://example.org/"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Link"));
        QCOMPARE(
            f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->property("name").toString(), QStringLiteral("link"));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("first line second line"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(1)), QStringLiteral("Text"));
        QCOMPARE(f.panel.item(QStringLiteral("rowSymbol"), f.row(1))->property("name").toString(),
            QStringLiteral("doc.on.clipboard"));
        QCOMPARE(HostedPanel::accessibleName(f.panel.item(QStringLiteral("deleteButton"), f.row(0))),
            QStringLiteral("Delete https://example.org/"));
        QCOMPARE(HostedPanel::accessibleName(f.panel.item(QStringLiteral("pinButton"), f.row(1))),
            QStringLiteral("Pin first line second line"));
    }

    void pinTogglesItsSymbolAndTheEntryStays()
    {
        Fixture f;
        f.copy(QStringLiteral("a"));
        f.copy(QStringLiteral("b"));
        QTRY_VERIFY(f.row(1));
        QQuickItem *pin = f.panel.item(QStringLiteral("pinButton"), f.row(1));
        QCOMPARE(pin->property("name").toString(), QStringLiteral("pin"));
        QCOMPARE(pin->opacity(), 0.4);
        HostedPanel::press(pin);
        QTRY_COMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->property("name").toString(),
            QStringLiteral("pin.fill"));
        QCOMPARE(HostedPanel::accessibleName(f.panel.item(QStringLiteral("pinButton"), f.row(1))),
            QStringLiteral("Unpin a"));
        QCOMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->opacity(), 0.9);
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("a"));
        QCOMPARE(f.pasteboard.text(), QStringLiteral("b")); // pinning copied nothing back
        HostedPanel::press(f.panel.item(QStringLiteral("pinButton"), f.row(1)));
        QTRY_COMPARE(f.panel.item(QStringLiteral("pinButton"), f.row(1))->opacity(), 0.4);
        QCOMPARE(
            f.panel.item(QStringLiteral("pinButton"), f.row(1))->property("name").toString(), QStringLiteral("pin"));
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("a")); // still in its place
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("b"));
        QVERIFY(!f.store.items().at(1).isPinned);
    }

    void pinAndDeleteClicksDoNotCopyTheEntry()
    {
        Fixture f;
        f.copy(QStringLiteral("keep me"));
        f.copy(QStringLiteral("on the clipboard"));
        QTRY_VERIFY(f.row(1));
        const qint64 changes = f.pasteboard.changeCount();
        HostedPanel::click(f.panel.item(QStringLiteral("pinButton"), f.row(0)));
        QTRY_VERIFY(f.store.items().at(0).isPinned);
        HostedPanel::click(f.panel.item(QStringLiteral("deleteButton"), f.row(1)));
        QTRY_COMPARE(f.store.items().size(), 1);
        QCOMPARE(f.pasteboard.changeCount(), changes); // nothing was copied back
        QCOMPARE(f.pasteboard.text(), QStringLiteral("on the clipboard"));
        // A click on the row itself does copy.
        HostedPanel::click(f.panel.item(QStringLiteral("rowTitle"), f.row(0)));
        QVERIFY(f.pasteboard.changeCount() > changes);
    }

    void imageRowsShowTheirPictureWithRoundedCorners()
    {
        Fixture f;
        f.pasteboard.offerFromElsewhere({ { QStringLiteral("image/png"), pngOf(Qt::red, QSize(60, 40)) } });
        // The picture is converted, then its thumbnail made, off the main thread: the row
        // shows the symbol until then.
        const auto thumbnailShown = [&f] {
            QQuickItem *row = f.row(0);
            QQuickItem *picture = row ? f.panel.item(QStringLiteral("rowThumbnail"), row) : nullptr;
            return picture && picture->isVisible() && picture->property("status").toInt() == 1;
        };
        QTRY_VERIFY(thumbnailShown());
        QQuickItem *thumbnail = f.panel.item(QStringLiteral("rowThumbnail"), f.row(0));
        QVERIFY(!f.panel.item(QStringLiteral("rowSymbol"), f.row(0))->isVisible());
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("Image"));
        QCOMPARE(f.panel.text(QStringLiteral("rowSubtitle"), f.row(0)), QStringLiteral("Image"));
        QTRY_COMPARE(thumbnail->property("status").toInt(), 1); // Image.Ready
        const QRectF frame = HostedPanel::sceneRect(thumbnail);
        QCOMPARE(frame.size(), QSizeF(22, 22));
        const QImage shown = f.panel.grab();
        const auto isRed = [&shown](qreal x, qreal y) {
            const QColor pixel = shown.pixelColor(int(x), int(y));
            return pixel.red() > 200 && pixel.green() < 60 && pixel.blue() < 60;
        };
        QVERIFY(isRed(frame.center().x(), frame.center().y()));
        QVERIFY(isRed(frame.left() + 0.5, frame.center().y())); // filled to the edges
        QVERIFY(isRed(frame.center().x(), frame.bottom() - 0.5));
        // The corners are cut away by a radius of 4.
        QVERIFY(!isRed(frame.left() + 0.5, frame.top() + 0.5));
        QVERIFY(!isRed(frame.right() - 0.5, frame.top() + 0.5));
        QVERIFY(!isRed(frame.left() + 0.5, frame.bottom() - 0.5));
        QVERIFY(!isRed(frame.right() - 0.5, frame.bottom() - 0.5));
        QVERIFY(isRed(frame.left() + 3.5, frame.top() + 3.5));
    }

    void thumbnailIsCroppedToFillAndRounded()
    {
        QTemporaryDir folder;
        // Wide: a blue band on each side of a red middle, which alone fills the square.
        QImage wide(90, 30, QImage::Format_ARGB32);
        wide.fill(Qt::red);
        for (int x = 0; x < 30; ++x) {
            for (int y = 0; y < 30; ++y) {
                wide.setPixelColor(x, y, Qt::blue);
                wide.setPixelColor(89 - x, y, Qt::blue);
            }
        }
        QVERIFY(wide.save(folder.filePath("wide.png")));
        const QImage thumbnail = ClipboardModule::roundedThumbnail(folder.filePath("wide.png"), 44, 8);
        QCOMPARE(thumbnail.size(), QSize(44, 44));
        QCOMPARE(thumbnail.pixelColor(22, 22), QColor(Qt::red));
        QCOMPARE(thumbnail.pixelColor(2, 22), QColor(Qt::red)); // the blue bands are cropped away
        QCOMPARE(thumbnail.pixelColor(22, 0), QColor(Qt::red));
        for (const QPoint corner : { QPoint(0, 0), QPoint(43, 0), QPoint(0, 43), QPoint(43, 43), QPoint(1, 1) })
            QCOMPARE(thumbnail.pixelColor(corner).alpha(), 0);
        QCOMPARE(thumbnail.pixelColor(4, 4).alpha(), 255);
        QVERIFY(ClipboardModule::roundedThumbnail(folder.filePath("missing.png"), 44, 8).isNull());
    }

    void thumbnailsAreMadeOnceAndNotOnTheSpot()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("picture.png");
        QVERIFY(QImage::fromData(pngOf(Qt::red, QSize(300, 200))).save(path));
        ThumbnailCache cache;
        QSignalSpy ready(&cache, &ThumbnailCache::ready);
        QCOMPARE(cache.url(path), QString()); // being made elsewhere
        QCOMPARE(cache.url(path), QString()); // asked again: still the one job
        QTRY_COMPARE(ready.count(), 1);
        const QString url = cache.url(path);
        QVERIFY(url.startsWith(QLatin1String("data:image/png;base64,")));
        QImage decoded;
        QVERIFY(decoded.loadFromData(QByteArray::fromBase64(url.mid(22).toLatin1()), "PNG"));
        QCOMPARE(decoded.size(), QSize(44, 44));
        QCOMPARE(QColor(decoded.pixel(22, 22)), QColor(Qt::red));
        // Made once: the list changing, or even the file, does not make it again.
        QVERIFY(QImage::fromData(pngOf(Qt::blue, QSize(30, 20))).save(path));
        cache.keepOnly({ path });
        QCOMPARE(cache.url(path), url);
        QTest::qWait(100);
        QCOMPARE(ready.count(), 1);
        cache.keepOnly({});
        QCOMPARE(cache.url(path), QString()); // forgotten with its entry
        QTRY_COMPARE(ready.count(), 2);
    }

    void imageWhosePictureIsMissingShowsTheClipboardSymbol()
    {
        Fixture f;
        f.pasteboard.offerFromElsewhere({ { QStringLiteral("image/png"), pngOf(Qt::red) } });
        QTRY_VERIFY(f.row(0));
        QVERIFY(f.panel.item(QStringLiteral("rowThumbnail"), f.row(0))->isVisible());
        const QString pictures = f.store.imagesDirectory();
        for (const QString &name : QDir(pictures).entryList(QDir::Files))
            QVERIFY(QFile::remove(QDir(pictures).filePath(name)));
        f.copy(QStringLiteral("something newer")); // the list is drawn again
        QTRY_VERIFY(f.row(1));
        QTRY_VERIFY(!f.panel.item(QStringLiteral("rowThumbnail"), f.row(1))->isVisible());
        QQuickItem *symbol = f.panel.item(QStringLiteral("rowSymbol"), f.row(1));
        QVERIFY(symbol->isVisible());
        QCOMPARE(symbol->property("name").toString(), QStringLiteral("doc.on.clipboard"));
        QCOMPARE(symbol->opacity(), 0.7);
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(1)), QStringLiteral("Image"));
    }

    void clickingARowCopiesItBackWithoutCapturingIt()
    {
        Fixture f;
        f.copy(QStringLiteral("older"));
        f.copy(QStringLiteral("newer"));
        QTRY_VERIFY(f.row(1));
        HostedPanel::press(f.row(1));
        QCOMPARE(f.pasteboard.text(), QStringLiteral("older"));
        QCOMPARE(f.store.items().size(), 2);
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), f.row(0)), QStringLiteral("newer"));
    }

    void deletingTheLastEntryBringsBackTheEmptyState()
    {
        Fixture f;
        f.copy(QStringLiteral("only"));
        QTRY_VERIFY(f.row(0));
        HostedPanel::press(f.panel.item(QStringLiteral("deleteButton"), f.row(0)));
        QTRY_VERIFY(f.panel.visible(QStringLiteral("clipboardEmpty")));
        QVERIFY(f.store.items().isEmpty());
    }

    void longHistoryScrollsWithinTwoHundredTwentyPoints()
    {
        Fixture f;
        for (int i = 0; i < 30; ++i)
            f.copy(QStringLiteral("entry %1").arg(i));
        QQuickItem *list = f.panel.item(QStringLiteral("clipboardList"));
        QTRY_VERIFY(list->property("contentHeight").toReal() > 220);
        QTRY_COMPARE(list->height(), 220.0);

        // The wheel scrolls it down to the oldest entry.
        f.panel.settle();
        const QPointF centre = HostedPanel::sceneRect(list).center();
        for (int i = 0; i < 60 && !list->property("atYEnd").toBool(); ++i) {
            QWheelEvent wheel(centre, list->window()->mapToGlobal(centre), QPoint(), QPoint(0, -120), Qt::NoButton,
                Qt::NoModifier, Qt::NoScrollPhase, false);
            wheel.setTimestamp(ulong(1000 + 200 * i));
            QCoreApplication::sendEvent(list->window(), &wheel);
            QTest::qWait(50);
        }
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QVERIFY(list->property("contentY").toReal() > 0);
        QQuickItem *oldest = nullptr;
        QTRY_VERIFY((oldest = f.row(29)) && oldest->isVisible());
        QCOMPARE(f.panel.text(QStringLiteral("rowTitle"), oldest), QStringLiteral("entry 0"));
        const QRectF shown = HostedPanel::sceneRect(list);
        QVERIFY(HostedPanel::sceneRect(oldest).bottom() <= shown.bottom() + 0.5);
        QVERIFY(HostedPanel::sceneRect(oldest).top() >= shown.top());
    }
};

QTEST_MAIN(TestClipboardPanel)
#include "test_clipboard_panel.moc"
