// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Nothing an open surface shows is cut off by its outline: for every style and every
// module on either side, each visible control and text lies inside the window's shape as
// the X server has it (bounding and input), and each button answers a press at its
// centre. Also: a drop near an open corner is taken where the outline is drawn, and the
// glance row sits in the middle of the surface.
#include "app/app_model.h"
#include "app/preferences_store.h"
#include "dragdrop/drop_payload.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/timer/timer_session.h"
#include "platform/x11/xcb_reply.h"
#include "surfaces/notch_controller.h"
#include "surfaces/notch_window_controller.h"
#include "tests/support/quick_item_search.h"
#include "tests/support/x11_tools.h"

#include <QAccessible>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickView>
#include <QRegion>
#include <QTest>
#include <QUuid>
#include <QtQuickTest/quicktest.h>

#include <xcb/shape.h>
#include <xcb/xcb.h>

#include <cmath>
#include <cstdlib>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

constexpr int settleMs = 10000;
// A point on the desktop far from both surfaces: a click there closes an open one.
const QPoint elsewhere(756, 600);

// The window's shape of one kind as the X server holds it, in screen coordinates.
QRegion xShape(xcb_window_t window, xcb_shape_kind_t kind)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    QRegion region;
    if (!xcb_connection_has_error(connection)) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
        const XcbReply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, window, root, 0, 0), nullptr));
        const XcbReply<xcb_shape_get_rectangles_reply_t> shape(
            xcb_shape_get_rectangles_reply(connection, xcb_shape_get_rectangles(connection, window, kind), nullptr));
        if (origin && shape) {
            const xcb_rectangle_t *rects = xcb_shape_get_rectangles_rectangles(shape.get());
            for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(shape.get()); ++i)
                region += QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height);
            region.translate(origin->dst_x, origin->dst_y);
        }
    }
    xcb_disconnect(connection);
    return region;
}

void pointerTo(const QPoint &point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) });
}

void clickAt(const QPoint &point)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()),
        QStringLiteral("click"), QStringLiteral("1") });
}

QAccessible::Role roleOf(QQuickItem *item)
{
    QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(item);
    return accessible ? accessible->role() : QAccessible::NoRole;
}

// What a user can see of an item, in its window: its own box, and for a text what it
// paints beyond that box, cut by every ancestor that clips.
QRectF visibleRect(QQuickItem *item)
{
    QRectF box(0, 0, item->width(), item->height());
    if (item->inherits("QQuickText")) {
        const qreal width = item->property("contentWidth").toReal();
        const qreal height = item->property("contentHeight").toReal();
        const int align = item->property("horizontalAlignment").toInt();
        const qreal x = align == Qt::AlignRight ? box.width() - width
            : align == Qt::AlignHCenter         ? (box.width() - width) / 2
                                                : 0;
        const int valign = item->property("verticalAlignment").toInt();
        const qreal y = valign == Qt::AlignBottom ? box.height() - height
            : valign == Qt::AlignVCenter          ? (box.height() - height) / 2
                                                  : 0;
        box |= QRectF(x, y, width, height);
    }
    QRectF rect = item->mapRectToScene(box);
    for (QQuickItem *ancestor = item->parentItem(); ancestor; ancestor = ancestor->parentItem()) {
        if (ancestor->clip())
            rect &= ancestor->mapRectToScene(QRectF(0, 0, ancestor->width(), ancestor->height()));
    }
    return rect;
}

bool shown(QQuickItem *item)
{
    for (QQuickItem *up = item; up; up = up->parentItem()) {
        if (!up->isVisible() || up->opacity() <= 0)
            return false;
    }
    return item->width() > 0 && item->height() > 0 && !visibleRect(item).isEmpty();
}

struct Control {
    QQuickItem *item = nullptr;
    QRectF rect; // in the window
    bool button = false;
};

QString describe(QQuickItem *item)
{
    QString text = item->property("text").toString().left(30);
    return QStringLiteral("%1 \"%2\" %3")
        .arg(item->objectName(), text, QString::fromLatin1(item->metaObject()->className()));
}

// Every control and text the open surface shows.
void collect(QQuickItem *item, QList<Control> &into)
{
    if (!item->isVisible() || item->opacity() <= 0)
        return;
    const QAccessible::Role role = roleOf(item);
    const bool button = role == QAccessible::Button;
    const bool text = (item->inherits("QQuickText") && !item->property("text").toString().isEmpty())
        || item->inherits("QQuickTextInput") || role == QAccessible::EditableText;
    const bool picture = item->inherits("QQuickImage");
    if ((button || text || picture) && shown(item))
        into.append({ item, visibleRect(item), button });
    for (QQuickItem *child : item->childItems())
        collect(child, into);
}

QList<Control> controlsOf(NotchWindowController *surface)
{
    QList<Control> controls;
    collect(surface->window()->contentItem(), controls);
    return controls;
}

// The controls (with where) that some part of lies outside the window's shape; empty
// once every one is inside both its bounding and its input shape.
QStringList outsideTheShape(NotchWindowController *surface, const QList<Control> &controls)
{
    QQuickView *window = surface->window();
    const xcb_window_t id = xcb_window_t(window->winId());
    const QRegion bounding = xShape(id, XCB_SHAPE_SK_BOUNDING);
    const QRegion input = xShape(id, XCB_SHAPE_SK_INPUT);
    QStringList outside;
    if (bounding.isEmpty() || input.isEmpty())
        return { QStringLiteral("no shape read back") };
    for (const Control &control : controls) {
        const QRect onScreen = control.rect.translated(window->position()).toAlignedRect();
        for (const auto &[name, shape] : { std::pair { "bounding", bounding }, std::pair { "input", input } }) {
            const QRegion cut = QRegion(onScreen).subtracted(shape);
            if (!cut.isEmpty()) {
                outside << QStringLiteral("%1 at %2 is cut by the %3 shape at %4")
                               .arg(describe(control.item), QDebug::toString(onScreen), QLatin1String(name),
                                   QDebug::toString(cut.boundingRect()));
            }
        }
    }
    return outside;
}

QPoint centreOnScreen(QQuickItem *item)
{
    return (visibleRect(item).center() + item->window()->position()).toPoint();
}

} // namespace

class TestSurfaceOutline : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // The newest Downloads: a few files, one with a long name.
        const QString downloads = QDir::home().filePath(QStringLiteral("Downloads"));
        QVERIFY(QDir().mkpath(downloads));
        for (const QString &name : { QStringLiteral("report.pdf"), QStringLiteral("holiday-photos.zip"),
                 QStringLiteral("a-very-long-file-name-that-is-wider-than-any-row-could-show.tar.gz") }) {
            QFile file(QDir(downloads).filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("data");
        }
        m_model = std::make_unique<AppModel>();
        m_model->start();
        // Moves snap: what is checked is where everything settles.
        m_model->prefs().update([](Preferences &p) {
            p = Preferences::defaults();
            p.animateInterface = false;
        });
        QTRY_COMPARE_WITH_TIMEOUT(m_model->notchController()->controllers().size(), std::size_t(2), settleMs);
    }

    void cleanupTestCase() { m_model.reset(); }

    void cleanup()
    {
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        pointerTo(elsewhere);
        if (m_model->timer().isRunning())
            m_model->timer().cancel();
        for (const auto &surface : m_model->notchController()->controllers()) {
            if (surface->surface()->presentation() == NotchPresentation::expanded)
                surface->behaviour().setPresentation(NotchPresentation::sleeping, false);
        }
    }

    void everyControlOfEveryModuleIsInsideTheShapeAndWorks_data()
    {
        QTest::addColumn<NotchStyle>("style");
        QTest::addColumn<ModuleID>("module");
        QTest::addColumn<NotchSide>("side");
        for (NotchStyle style : allNotchStyles) {
            for (ModuleID module :
                { ModuleID::clipboard, ModuleID::downloads, ModuleID::timer, ModuleID::launcher, ModuleID::calendar }) {
                for (NotchSide side : { NotchSide::left, NotchSide::right }) {
                    QTest::addRow("%s-%s-%s", qPrintable(rawValue(style)), qPrintable(rawValue(module)),
                        qPrintable(rawValue(side)))
                        << style << module << side;
                }
            }
        }
    }
    void everyControlOfEveryModuleIsInsideTheShapeAndWorks()
    {
        QFETCH(NotchStyle, style);
        QFETCH(ModuleID, module);
        QFETCH(NotchSide, side);
        const QStringList copies = { QStringLiteral("short note %1").arg(++m_round),
            QStringLiteral("a longer line copied from somewhere, far too wide for the row %1").arg(m_round),
            QStringLiteral("third %1").arg(m_round) };
        if (module == ModuleID::clipboard) {
            // Another application copies, as a user would.
            for (const QString &text : copies) {
                QVERIFY(copyElsewhere(text.toUtf8()));
                QTRY_VERIFY_WITH_TIMEOUT(
                    !m_model->clipboard().items().isEmpty() && m_model->clipboard().items().constFirst().text == text,
                    settleMs);
            }
        }
        m_model->prefs().update([&](Preferences &p) {
            p.style = style;
            p.leftModuleIDs = side == NotchSide::left ? QList<ModuleID> { module } : QList<ModuleID> {};
            p.rightModuleIDs = side == NotchSide::right ? QList<ModuleID> { module } : QList<ModuleID> {};
            p.launcherItems = { website(QStringLiteral("Example")),
                website(QStringLiteral("A site with a long title that cannot fit")) };
        });
        NotchWindowController *surface = open(side);
        QVERIFY(surface);
        QQuickItem *root = surface->window()->rootObject();

        switch (module) {
        case ModuleID::clipboard: {
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("clipboardRow_2"))));
            expectInside(surface);
            // Pin pins the entry of its row, and a second press unpins it.
            for (const QString &text : copies) {
                for (bool pinned : { true, false }) {
                    press(pinButtonOf(root, text));
                    QTRY_COMPARE(isPinned(text), pinned);
                }
            }
            // A click on a row puts its entry back on the clipboard.
            for (const QString &text : copies) {
                press(rowOf(root, QStringLiteral("clipboardRow_"), text));
                QTRY_COMPARE(QGuiApplication::clipboard()->text(), text);
            }
            // Delete deletes the entry of its row, until none is left.
            for (const QString &text : copies) {
                const int before = m_model->clipboard().count();
                press(findItem(rowOf(root, QStringLiteral("clipboardRow_"), text), QStringLiteral("deleteButton")));
                QTRY_COMPARE(m_model->clipboard().count(), before - 1);
            }
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("clipboardEmpty"))));
            expectInside(surface);
            break;
        }
        case ModuleID::downloads:
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("downloadsRow_2"))));
            expectInside(surface);
            // A row opens its file: only that the press lands on the row is checked.
            for (int i = 0; i < 3; ++i)
                pressAndLetGo(findItem(root, QStringLiteral("downloadsRow_%1").arg(i)));
            break;
        case ModuleID::timer: {
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("preset_30"))));
            expectInside(surface);
            QQuickItem *label = findItem(root, QStringLiteral("customLabel"));
            press(findItem(root, QStringLiteral("stepUp")));
            QTRY_COMPARE(label->property("text").toString(), QStringLiteral("21 min"));
            press(findItem(root, QStringLiteral("stepDown")));
            QTRY_COMPARE(label->property("text").toString(), QStringLiteral("20 min"));
            press(findItem(root, QStringLiteral("startButton")));
            QTRY_VERIFY(m_model->timer().isRunning());
            // The running clock and Cancel are inside too.
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("cancelButton"))));
            expectInside(surface);
            press(findItem(root, QStringLiteral("cancelButton")));
            QTRY_VERIFY(!m_model->timer().isRunning());
            for (int minutes : { 5, 10, 15, 30 }) {
                QQuickItem *preset = nullptr;
                QTRY_VERIFY(placed(preset = findItem(root, QStringLiteral("preset_%1").arg(minutes))));
                press(preset);
                QTRY_VERIFY(m_model->timer().isRunning());
                QCOMPARE(m_model->timer().lastPresetMinutes(), minutes);
                m_model->timer().cancel();
            }
            break;
        }
        case ModuleID::launcher: {
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("launcherRow_1")))
                && placed(findItem(root, QStringLiteral("addFile"))));
            expectInside(surface);
            // Opening a site, choosing an app or a file, adding a site and the address
            // field: the press lands.
            for (const char *name : { "launcherRow_0", "launcherRow_1", "addApp", "addFile", "addSiteButton" })
                pressAndLetGo(findItem(root, QString::fromLatin1(name)));
            QVERIFY(!QGuiApplication::modalWindow()); // let go elsewhere, none was clicked
            pressAndLetGo(findItem(root, QStringLiteral("addressField")));
            // Remove removes the site of its row.
            for (int left = 2; left > 0; --left) {
                press(findItem(findItem(root, QStringLiteral("launcherRow_0")), QStringLiteral("removeButton")));
                QTRY_COMPARE(m_model->prefs().current().launcherItems.size(), left - 1);
            }
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("launcherHint"))));
            expectInside(surface);
            break;
        }
        default:
            QTRY_VERIFY(placed(findItem(root, QStringLiteral("comingSoonMessage"))));
            expectInside(surface);
            break;
        }
        if (QTest::currentTestFailed())
            return;
        close(surface);
    }

    void theDropViewIsInsideTheShapeAndWorks_data()
    {
        QTest::addColumn<NotchStyle>("style");
        QTest::addColumn<NotchSide>("side");
        for (NotchStyle style : allNotchStyles) {
            for (NotchSide side : { NotchSide::left, NotchSide::right })
                QTest::addRow("%s-%s", qPrintable(rawValue(style)), qPrintable(rawValue(side))) << style << side;
        }
    }
    void theDropViewIsInsideTheShapeAndWorks()
    {
        QFETCH(NotchStyle, style);
        QFETCH(NotchSide, side);
        m_model->prefs().update([&](Preferences &p) {
            p.style = style;
            p.leftModuleIDs = Preferences::defaults().leftModuleIDs;
            p.rightModuleIDs = Preferences::defaults().rightModuleIDs;
        });
        NotchWindowController *surface = this->surface(side);
        QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == surface->targetFrame(NotchPresentation::sleeping), settleMs);
        const QString words = QStringLiteral("Words dropped onto the surface from another application, long enough "
                                             "to need two lines %1")
                                  .arg(++m_round);
        QMimeData data;
        data.setText(words);
        surface->dragDidEnter(std::make_shared<const DropPayload>(*DropPayload::from(data)));
        surface->dragDidDrop(std::make_shared<const DropPayload>(*DropPayload::from(data)));
        QQuickItem *root = surface->window()->rootObject();
        QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == surface->targetFrame(NotchPresentation::expanded), settleMs);
        QTRY_VERIFY(placed(findItem(root, QStringLiteral("dropAction_open"))));
        expectInside(surface);
        // The row's buttons and the one below it take a press at their centre; Copy
        // copies the words and gives the panel back to the modules.
        for (const char *name : { "dropAction_save", "dropAction_share", "dropAction_open", "dropAction_airDrop" })
            pressAndLetGo(findItem(root, QString::fromLatin1(name)));
        press(findItem(root, QStringLiteral("dropAction_copy")));
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), words);
        QTRY_VERIFY(!surface->surface()->hasDropPayload());
        close(surface);
    }

    // Where the outline of an open pill is drawn, a drop is taken: a point beside the
    // left edge, well below the top corner, that a capsule would leave out.
    void aDropBesideAnOpenEdgeIsTakenWhereTheOutlineIsDrawn()
    {
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::pill; });
        NotchWindowController *surface = this->surface(NotchSide::left);
        surface->behaviour().setPresentation(NotchPresentation::expanded, false);
        QQuickView *window = surface->window();
        QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == surface->targetFrame(NotchPresentation::expanded), settleMs);
        QTRY_COMPARE(window->size(), surface->targetFrame(NotchPresentation::expanded).size());
        const QPoint beside(6, 80);
        // Qt sends the new shape with its next round of requests to the X server.
        QTRY_VERIFY(xShape(xcb_window_t(window->winId()), XCB_SHAPE_SK_BOUNDING).contains(beside + window->position()));
        QCOMPARE(findItem(window->rootObject(), QStringLiteral("surfaceFill"))->property("radius").toDouble(), 24.0);

        QMimeData data;
        data.setText(QStringLiteral("taken"));
        QDragEnterEvent enter(beside, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop(QPointF(beside), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window, &drop);
        QVERIFY(drop.isAccepted());
        QTRY_VERIFY(surface->surface()->hasDropPayload());
        QCOMPARE(surface->dropSummary(), QStringLiteral("taken"));
        surface->behaviour().setPresentation(NotchPresentation::sleeping, false);
    }

    void theGlanceRowIsCentred_data()
    {
        QTest::addColumn<NotchStyle>("style");
        QTest::addColumn<bool>("counting");
        for (NotchStyle style : allNotchStyles) {
            QTest::addRow("%s-glance", qPrintable(rawValue(style))) << style << false;
            QTest::addRow("%s-active", qPrintable(rawValue(style))) << style << true;
        }
    }
    void theGlanceRowIsCentred()
    {
        QFETCH(NotchStyle, style);
        QFETCH(bool, counting);
        m_model->prefs().update([&](Preferences &p) {
            p.style = style;
            p.leftModuleIDs = { ModuleID::clipboard };
        });
        // A short newest copy: a text cut short at its end paints less than its box.
        const QString copied = QStringLiteral("note %1").arg(++m_round);
        QVERIFY(copyElsewhere(copied.toUtf8()));
        NotchWindowController *surface = this->surface(NotchSide::left);
        QTRY_VERIFY_WITH_TIMEOUT(
            !m_model->clipboard().items().isEmpty() && m_model->clipboard().items().constFirst().text == copied,
            settleMs);
        const NotchPresentation presentation = counting ? NotchPresentation::active : NotchPresentation::glance;
        if (counting) {
            m_model->timer().start(5 * 60);
        } else {
            const QRect sleeping = surface->targetFrame(NotchPresentation::sleeping);
            QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == sleeping, settleMs);
            pointerTo(sleeping.center());
        }
        QTRY_COMPARE(surface->surface()->presentation(), presentation);
        if (!counting)
            QTRY_COMPARE(surface->surface()->glanceText(), copied);
        QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == surface->targetFrame(presentation), settleMs);
        QQuickItem *root = surface->window()->rootObject();
        QQuickItem *symbol = findItem(root, QStringLiteral("glanceSymbol"));
        QQuickItem *text = findItem(root, QStringLiteral("glanceText"));
        QVERIFY(symbol && text);
        // The box around the symbol and what the text paints, against the middle of
        // the surface as it is on screen.
        const auto offCentre = [&] {
            const QRectF symbolBox = symbol->mapRectToScene(QRectF(0, 0, symbol->width(), symbol->height()));
            const qreal painted = std::min(text->width(), text->property("contentWidth").toReal());
            const QRectF textBox = text->mapRectToScene(QRectF(0, 0, painted, text->height()));
            return (symbolBox | textBox).center() - QRectF(QPointF(), surface->window()->size()).center();
        };
        QTRY_VERIFY2(std::abs(offCentre().x()) <= 1 && std::abs(offCentre().y()) <= 1,
            qPrintable(QDebug::toString(offCentre())));
        QVERIFY(text->property("contentWidth").toReal() > 10); // a text was shown
        pointerTo(elsewhere);
        if (counting)
            m_model->timer().cancel();
        QTRY_COMPARE_WITH_TIMEOUT(surface->surface()->presentation(), NotchPresentation::sleeping, settleMs);
    }

private:
    NotchWindowController *surface(NotchSide side) const
    {
        for (const auto &controller : m_model->notchController()->controllers()) {
            if (controller->side() == side)
                return controller.get();
        }
        return nullptr;
    }

    static QRect xGeometryOf(NotchWindowController *surface)
    {
        return xWindowRect(xcb_window_t(surface->window()->winId()));
    }

    static QRect xWindowRect(xcb_window_t window)
    {
        xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
        QRect rect;
        if (!xcb_connection_has_error(connection)) {
            const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
            const XcbReply<xcb_get_geometry_reply_t> geometry(
                xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
            const XcbReply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
                connection, xcb_translate_coordinates(connection, window, root, 0, 0), nullptr));
            if (geometry && origin)
                rect = QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
        }
        xcb_disconnect(connection);
        return rect;
    }

    static bool placed(QQuickItem *item) { return item && shown(item); }

    static LauncherItem website(const QString &title)
    {
        LauncherItem item;
        item.id = QUuid::createUuid();
        item.title = title;
        item.kind = LauncherItem::Kind::website;
        item.urlString = QStringLiteral("https://example.org/") + QString::number(qHash(title));
        return item;
    }

    // Opens a side's surface with a click on it, as a user does, once it has settled.
    NotchWindowController *open(NotchSide side)
    {
        NotchWindowController *surface = this->surface(side);
        bool opened = false;
        [&] {
            QVERIFY(surface);
            const NotchPresentation now = surface->surface()->presentation();
            QTRY_VERIFY_WITH_TIMEOUT(xGeometryOf(surface) == surface->targetFrame(now), settleMs);
            clickAt(surface->targetFrame(now).center());
            QTRY_COMPARE_WITH_TIMEOUT(surface->surface()->presentation(), NotchPresentation::expanded, settleMs);
            QTRY_VERIFY_WITH_TIMEOUT(
                xGeometryOf(surface) == surface->targetFrame(NotchPresentation::expanded), settleMs);
            QTRY_VERIFY_WITH_TIMEOUT(
                surface->window()->position() == surface->targetFrame(NotchPresentation::expanded).topLeft(), settleMs);
            opened = true;
        }();
        return opened ? surface : nullptr;
    }

    void close(NotchWindowController *surface)
    {
        clickAt(elsewhere);
        QTRY_COMPARE_WITH_TIMEOUT(surface->surface()->presentation(), NotchPresentation::sleeping, settleMs);
    }

    // Every control the open surface shows lies inside its shape, once laid out.
    void expectInside(NotchWindowController *surface)
    {
        QStringList outside;
        QVERIFY(QQuickTest::qWaitForPolish(surface->window(), 5000));
        const bool inside = QTest::qWaitFor(
            [&] {
                const QList<Control> controls = controlsOf(surface);
                outside = controls.isEmpty() ? QStringList { QStringLiteral("nothing shown") }
                                             : outsideTheShape(surface, controls);
                return outside.isEmpty();
            },
            5000);
        QVERIFY2(inside, qPrintable(outside.join(QLatin1Char('\n'))));
    }

    // A click at the item's centre, as the user's.
    static void press(QQuickItem *item)
    {
        QVERIFY(item);
        // Where the item is once its layout has placed it.
        QVERIFY(QQuickTest::qWaitForPolish(item->window(), 5000));
        const QPoint centre = centreOnScreen(item);
        xdotool({ QStringLiteral("mousemove"), QString::number(centre.x()), QString::number(centre.y()),
            QStringLiteral("click"), QStringLiteral("1") });
    }

    // A press at the item's centre that lands on the item (the item or a part of it
    // takes the pointer), let go elsewhere so that the click does not happen: for the
    // buttons that start another program or open a dialog.
    static void pressAndLetGo(QQuickItem *item)
    {
        QVERIFY(item);
        QVERIFY2(shown(item), qPrintable(describe(item)));
        if (!item->isEnabled())
            return; // a disabled button takes no press; it is still inside the shape
        QVERIFY(QQuickTest::qWaitForPolish(item->window(), 5000));
        const QPoint centre = centreOnScreen(item);
        QQuickWindow *window = item->window();
        xdotool({ QStringLiteral("mousemove"), QString::number(centre.x()), QString::number(centre.y()),
            QStringLiteral("mousedown"), QStringLiteral("1") });
        const auto onItem = [&] {
            for (QQuickItem *grabber = window->mouseGrabberItem(); grabber; grabber = grabber->parentItem()) {
                if (grabber == item)
                    return true;
            }
            return false;
        };
        const bool landed = QTest::qWaitFor(onItem, 5000);
        const QPoint away = window->position() + QPoint(window->width() / 2, 2);
        xdotool({ QStringLiteral("mousemove"), QString::number(away.x()), QString::number(away.y()),
            QStringLiteral("mouseup"), QStringLiteral("1") });
        QVERIFY2(landed, qPrintable(describe(item)));
    }

    static QQuickItem *rowOf(QQuickItem *root, const QString &prefix, const QString &title)
    {
        for (int i = 0; i < 50; ++i) {
            QQuickItem *row = findItem(root, prefix + QString::number(i));
            QQuickItem *rowTitle = row ? findItem(row, QStringLiteral("rowTitle")) : nullptr;
            if (rowTitle && rowTitle->property("text").toString() == title)
                return row;
        }
        return nullptr;
    }

    static QQuickItem *pinButtonOf(QQuickItem *root, const QString &title)
    {
        QQuickItem *row = rowOf(root, QStringLiteral("clipboardRow_"), title);
        return row ? findItem(row, QStringLiteral("pinButton")) : nullptr;
    }

    bool isPinned(const QString &text) const
    {
        for (const ClipboardItem &item : m_model->clipboard().items()) {
            if (item.text == text)
                return item.isPinned;
        }
        return false;
    }

    std::unique_ptr<AppModel> m_model;
    int m_round = 0;
};

QTEST_MAIN(TestSurfaceOutline)
#include "test_surface_outline.moc"
