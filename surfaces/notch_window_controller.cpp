// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_window_controller.h"

#include "app/preferences_store.h"
#include "dragdrop/drop_actions.h"
#include "dragdrop/drop_saves.h"
#include "modules/ledgewise_module.h"
#include "platform/x11/compositing.h"
#include "platform/x11/global_click_monitor.h"
#include "surfaces/notch_layout.h"
#include "surfaces/surface_shadow.h"
#include "surfaces/surface_shape.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRegion>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace ledgewise {

namespace {

constexpr double baseAnimationSeconds = 0.38;
constexpr double reducedMotionSeconds = 0.12;
constexpr int fadeMs = 120;
constexpr double fadeStartOpacity = 0.86;

double primaryHeight()
{
    const QScreen *primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().height() : 0;
}

// Marks the surface windows among our own: every other window of ours is a dialog,
// a menu or another window the user works in.
constexpr char surfaceWindowProperty[] = "ledgewiseSurfaceWindow";

bool isSurfaceWindow(const QWindow *window)
{
    return window && window->property(surfaceWindowProperty).toBool();
}

// One of our own windows other than a surface lies on screen under `point` (the X
// server's stacking, not Qt's idea of it).
bool ownDialogOrMenuAt(const QPoint &point)
{
    const QWindow *window = QGuiApplication::topLevelAt(point);
    return window && !isSurfaceWindow(window);
}

// The item that has the keyboard in `window`, or that will have it once the window is
// given the keyboard: while another window has it, Qt Quick keeps no active focus item
// in this one, though the item the user focused here keeps its focus in its scope.
QQuickItem *focusedItem(const QQuickWindow &window)
{
    if (QQuickItem *active = window.activeFocusItem())
        return active;
    QQuickItem *item = window.contentItem();
    while (item && item->isFocusScope() && item->scopedFocusItem())
        item = item->scopedFocusItem();
    return item == window.contentItem() ? nullptr : item;
}

QEasingCurve surfaceCurve()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(QPointF(0.16, 1.0), QPointF(0.3, 1.0), QPointF(1.0, 1.0));
    return curve;
}

} // namespace

NotchWindowController::NotchWindowController(
    NotchSide side, const DisplaySnapshot &display, SurfaceContext *context, QQmlEngine &engine, QObject *parent)
    : QObject(parent)
    , m_context(context)
    , m_engine(&engine)
    , m_display(display)
    , m_surface(side)
    , m_behaviour(m_surface, *this, *this)
    , m_window(std::make_unique<QQuickView>(&engine, nullptr))
    , m_catcher(std::make_unique<DragCatcher>())
{
    m_hideWork.setSingleShot(true);
    connect(&m_hideWork, &QTimer::timeout, this, [this] { m_behaviour.hideDidFire(); });

    m_animation.setEasingCurve(surfaceCurve());
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
        [this](const QVariant &value) { applyFrame(value.toRect()); });
    connect(&m_animation, &QVariantAnimation::finished, this, &NotchWindowController::moveFinished);
    m_fade.setStartValue(fadeStartOpacity);
    m_fade.setEndValue(1.0);
    m_fade.setDuration(fadeMs);
    connect(&m_fade, &QVariantAnimation::valueChanged, this,
        [this](const QVariant &value) { m_window->setOpacity(value.toDouble()); });

    connect(&m_surface, &NotchSurfaceModel::dropPayloadChanged, this, [this] {
        m_dropNotice.clear(); // a notice speaks of the drop it was given for
        emit dropChanged();
    });

    QQuickView &window = *m_window;
    // A surface hangs over any top panel, never takes focus and is left alone by the
    // window manager (it places and stacks override-redirect windows as they are).
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus
        | Qt::X11BypassWindowManagerHint);
    window.setTitle(windowTitle(side));
    window.setProperty(surfaceWindowProperty, true);
    window.setColor(Qt::transparent);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.installEventFilter(m_catcher.get());
    m_catcher->setHandler(this, this);
    window.setInitialProperties(
        { { QStringLiteral("controller"), QVariant::fromValue(static_cast<QObject *>(this)) } });
    window.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Ledgewise/Surfaces/NotchRootView.qml")));
    if (window.status() == QQuickView::Error) {
        for (const QQmlError &error : window.errors())
            qWarning("%s", qPrintable(error.toString()));
    }
    if (m_context) {
        connect(&m_context->preferencesStore(), &PreferencesStore::currentChanged, this,
            &NotchWindowController::appearanceChanged);
    }
    // A surface never takes the keyboard, except while a text field in it has focus.
    connect(&window, &QQuickWindow::activeFocusItemChanged, this, &NotchWindowController::followTextFocus);
    applyFrame(targetFrame(NotchPresentation::sleeping));
}

NotchWindowController::~NotchWindowController()
{
    close();
}

QString NotchWindowController::windowTitle(NotchSide side)
{
    return side == NotchSide::left ? QStringLiteral("Ledgewise left surface")
                                   : QStringLiteral("Ledgewise right surface");
}

Preferences NotchWindowController::preferences() const
{
    return m_context ? m_context->preferencesStore().current() : Preferences::defaults();
}

namespace {

ModuleGlance glanceOf(const LedgewiseModule &module)
{
    return { module.glanceSymbol(), module.glanceText(), module.glanceActive() };
}

} // namespace

QList<ModuleGlance> NotchWindowController::modules(NotchSide side) const
{
    QList<ModuleGlance> result;
    if (!m_context)
        return result;
    for (const LedgewiseModule *module : m_context->modulesOf(side))
        result.append(glanceOf(*module));
    return result;
}

std::optional<ModuleGlance> NotchWindowController::activeGlance() const
{
    if (!m_context)
        return std::nullopt;
    for (const LedgewiseModule *module : m_context->allModules()) {
        if (module->glanceActive())
            return glanceOf(*module);
    }
    return std::nullopt;
}

QRect NotchWindowController::targetFrame(NotchPresentation presentation) const
{
    const Rect frame = NotchLayout::frame(side(), presentation, preferences(), m_display);
    return toWindowRect(frame, primaryHeight());
}

QRect NotchWindowController::frameInScreen() const
{
    return m_window->geometry();
}

void NotchWindowController::show()
{
    m_window->show();
    m_window->raise();
}

void NotchWindowController::close()
{
    m_animation.stop();
    m_fade.stop();
    m_hideWork.stop();
    removeCollapseMonitors();
    if (m_shadow)
        m_shadow->hide();
    if (m_window)
        m_window->close();
}

void NotchWindowController::presentFromCenter()
{
    const QRect target = targetFrame(m_surface.presentation());
    const QRect screen = toWindowRect(m_display.frame, primaryHeight());
    const QRect start(screen.center().x() - target.width() / 2, screen.top(), target.width(), target.height());
    applyFrame(start);
    m_window->setOpacity(reduceMotion() ? 0.0 : 1.0);
    show();
    if (reduceMotion()) {
        applyFrame(target);
        m_fade.stop();
        m_fade.setStartValue(0.0);
        m_fade.setDuration(160);
        m_fade.start();
        return;
    }
    animate(target);
}

void NotchWindowController::moveToCurrentPresentation(const DisplaySnapshot &display)
{
    m_display = display;
    move(m_surface.presentation(), false);
    emit appearanceChanged();
}

int NotchWindowController::animationDurationMs(double animationSpeed, bool reduceMotion)
{
    // A stored speed may be any double: one that is not a number moves at the usual pace.
    const double speed = std::isnan(animationSpeed) ? 1.0 : std::max(animationSpeed, 0.25);
    const double seconds = reduceMotion ? reducedMotionSeconds : baseAnimationSeconds / speed;
    return int(std::lround(seconds * 1000));
}

bool NotchWindowController::reduceMotion() const
{
    return qEnvironmentVariableIntValue("LEDGEWISE_REDUCE_MOTION") == 1 || (m_context && m_context->reduceMotion());
}

void NotchWindowController::followTextFocus()
{
    QQuickItem *item = focusedItem(*m_window);
    const bool wantsKeys
        = item && item->inherits("QQuickTextInput") && m_surface.presentation() == NotchPresentation::expanded;
    if (wantsKeys == !m_window->flags().testFlag(Qt::WindowDoesNotAcceptFocus))
        return;
    m_window->setFlag(Qt::WindowDoesNotAcceptFocus, !wantsKeys);
    if (wantsKeys)
        m_window->requestActivate();
}

void NotchWindowController::pressedInSurface()
{
    followTextFocus();
    // Pressed again in a field that kept its focus while the keyboard was away (in a
    // chooser the surface opened): the window still accepts keys, it only needs them back.
    if (!m_window->flags().testFlag(Qt::WindowDoesNotAcceptFocus) && !m_window->isActive())
        m_window->requestActivate();
}

void NotchWindowController::presentationDidChange(NotchPresentation presentation, bool animated)
{
    updateShadow(presentation);
    if (presentation == NotchPresentation::expanded) {
        installCollapseMonitors();
    } else {
        removeCollapseMonitors();
        if (QQuickItem *focused = focusedItem(*m_window))
            focused->setFocus(false);
        followTextFocus();
    }
    move(presentation, animated);
    emit appearanceChanged();
}

void NotchWindowController::move(NotchPresentation presentation, bool animated)
{
    const QRect target = targetFrame(presentation);
    if (animated && preferences().animateInterface && !reduceMotion()) {
        animate(target);
        return;
    }
    // Even a change without animation is marked by a short fade.
    m_animation.stop();
    applyFrame(target);
    m_fade.stop();
    m_fade.setStartValue(fadeStartOpacity);
    m_fade.setDuration(fadeMs);
    m_window->setOpacity(fadeStartOpacity);
    m_fade.start();
    emit moveFinished();
}

void NotchWindowController::animate(const QRect &to)
{
    m_animation.stop();
    m_animation.setStartValue(m_window->geometry());
    m_animation.setEndValue(to);
    const double speed = m_context ? preferences().animationSpeed : 1.0;
    m_animation.setDuration(animationDurationMs(speed, reduceMotion()));
    m_window->setOpacity(1.0);
    m_animation.start();
}

void NotchWindowController::applyFrame(const QRect &frame)
{
    m_window->setGeometry(frame);
    // Every frame on the way of a move too: the outline follows the size the window has
    // now, so the shape, the fill and where a drop is taken never disagree mid-move.
    const Preferences p = preferences();
    const double radius
        = NotchLayout::outlineRadius(p.style, Size { double(frame.width()), double(frame.height()) }, p);
    m_window->setMask(roundedRegion(frame.size(), radius));
    m_catcher->setPillCornerRadius(radius);
    if (m_shadow)
        m_shadow->follow(frame, radius);
    if (radius != m_outlineRadius) {
        m_outlineRadius = radius;
        emit outlineChanged();
    }
}

void NotchWindowController::updateShadow(NotchPresentation presentation)
{
    // Only an open surface casts a shadow, and only where a compositor blends it:
    // without one its faint black would show as a solid black ring.
    if (presentation != NotchPresentation::expanded || !compositingManagerRunning()) {
        if (m_shadow)
            m_shadow->hide();
        return;
    }
    if (!m_shadow) {
        m_shadow = std::make_unique<SurfaceShadow>(*m_engine,
            side() == NotchSide::left ? QStringLiteral("Ledgewise left shadow")
                                      : QStringLiteral("Ledgewise right shadow"));
    }
    const QRect frame = m_window->geometry();
    m_shadow->show(frame, m_outlineRadius);
    // The shadow goes under the surface wherever the two meet.
    m_window->raise();
}

QQuickView *NotchWindowController::shadowWindow() const
{
    return m_shadow && m_shadow->isShown() ? m_shadow->window() : nullptr;
}

void NotchWindowController::scheduleHide(double seconds)
{
    m_hideWork.start(int(std::lround(seconds * 1000)));
}

void NotchWindowController::cancelHide()
{
    m_hideWork.stop();
}

void NotchWindowController::installCollapseMonitors()
{
    removeCollapseMonitors();
    // Clicks in other applications reach us as raw events; our own through the
    // application's event stream. Either only schedules the check.
    m_globalMonitor = std::make_unique<GlobalClickMonitor>();
    connect(m_globalMonitor.get(), &GlobalClickMonitor::buttonPressed, this, &NotchWindowController::pressedAnywhere);
    qApp->installEventFilter(this);
    m_localMonitor = true;
}

void NotchWindowController::removeCollapseMonitors()
{
    m_globalMonitor.reset();
    if (m_localMonitor && qApp)
        qApp->removeEventFilter(this);
    m_localMonitor = false;
}

void NotchWindowController::pressedAnywhere(int button, quint32 time)
{
    if (button != 1)
        return;
    // A press in one of our own dialogs or menus is not a click elsewhere. Qt may have
    // delivered it already (its time was noted), or not yet (then its window is still
    // on screen: only the release that follows can close it). Decided now, not in the
    // queued check, by when the click may have closed the dialog.
    if (time == m_lastOwnWindowPress || ownDialogOpen() || ownDialogOrMenuAt(QCursor::pos()))
        return;
    QMetaObject::invokeMethod(this, &NotchWindowController::collapseIfClickOutside, Qt::QueuedConnection);
}

bool NotchWindowController::eventFilter(QObject *watched, QEvent *event)
{
    if (m_localMonitor && event->type() == QEvent::MouseButtonPress && watched->isWindowType()
        && static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton) {
        const auto *press = static_cast<QMouseEvent *>(event);
        const auto *window = static_cast<QWindow *>(watched);
        // A menu holding the pointer is sent presses from anywhere: only one that lands
        // inside it is a press in our own window.
        if (!isSurfaceWindow(window) && window->geometry().contains(press->globalPosition().toPoint()))
            m_lastOwnWindowPress = quint32(press->timestamp());
        else
            QMetaObject::invokeMethod(this, &NotchWindowController::collapseIfClickOutside, Qt::QueuedConnection);
        // Looked at once the press has been delivered and may have focused a field.
        if (window == m_window.get())
            QMetaObject::invokeMethod(this, &NotchWindowController::pressedInSurface, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

void NotchWindowController::collapseIfClickOutside()
{
    if (m_surface.presentation() != NotchPresentation::expanded)
        return;
    // While one of our own dialogs is open (a file chooser the surface asked for), the
    // surface waits for it.
    if (ownDialogOpen())
        return;
    if (!m_window->geometry().contains(QCursor::pos()))
        m_behaviour.clickedOutside();
}

bool NotchWindowController::ownDialogOpen() const
{
    return QGuiApplication::modalWindow() || (m_context && m_context->ownDialogOpen());
}

double NotchWindowController::fillOpacity() const
{
    return preferences().opacity;
}

bool NotchWindowController::classicRim() const
{
    return preferences().style == NotchStyle::classic;
}

QList<QObject *> NotchWindowController::modules() const
{
    QList<QObject *> result;
    if (!m_context)
        return result;
    for (LedgewiseModule *module : m_context->modulesOf(side()))
        result.append(module);
    return result;
}

QString NotchWindowController::dropSummary() const
{
    const DropPayload *payload = m_surface.dropPayload();
    return payload ? payload->summary() : QString();
}

QVariantList NotchWindowController::dropActions()
{
    QVariantList actions;
    for (DropAction action : allDropActions) {
        actions.append(QVariantMap { { QStringLiteral("action"), rawValue(action) },
            { QStringLiteral("title"), title(action) }, { QStringLiteral("symbol"), systemImage(action) } });
    }
    return actions;
}

QObject *NotchWindowController::saves() const
{
    return m_context ? m_context->dropSaves() : nullptr;
}

QObject *NotchWindowController::devices() const
{
    return m_context ? m_context->deviceSender() : nullptr;
}

void NotchWindowController::hoverChanged(bool hovering)
{
    m_behaviour.handleHover(hovering);
}

void NotchWindowController::clicked()
{
    if (m_surface.presentation() != NotchPresentation::expanded)
        emit toggleRequested(side());
}

void NotchWindowController::secondaryClicked()
{
    emit contextMenuRequested(QCursor::pos());
}

void NotchWindowController::performDropAction(const QString &action)
{
    const auto dropAction = dropActionFromRaw(action);
    const DropPayload *payload = m_surface.dropPayload();
    if (!dropAction || !payload)
        return;
    // Open hands nothing to the desktop that could start some unexpected program; the
    // drop stays so that another action can be chosen.
    if (*dropAction == DropAction::open && DropActions::refusesToOpen(*payload)) {
        m_dropNotice = DropActions::refusedToOpenText();
        emit dropChanged();
        return;
    }
    // Keep the payload alive through the action, whatever the action does to the model.
    const DropPayload copy = *payload;
    if (m_context)
        m_context->performDropAction(*dropAction, copy);
    // Share leaves the item on the surface; every other action returns to the modules.
    if (*dropAction != DropAction::share)
        m_surface.setDropPayload(nullptr);
}

void NotchWindowController::dragDidEnter(std::shared_ptr<const DropPayload> payload)
{
    m_behaviour.dragDidEnter(std::move(payload));
}

void NotchWindowController::dragDidExit()
{
    m_behaviour.dragDidExit();
}

void NotchWindowController::dragDidDrop(std::shared_ptr<const DropPayload> payload)
{
    m_behaviour.dragDidDrop(std::move(payload));
}

} // namespace ledgewise
