// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drag_catcher.h"
#include "surfaces/display_snapshot.h"
#include "surfaces/notch_surface_model.h"
#include "surfaces/surface_behaviour.h"
#include "surfaces/surface_context.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

#include <memory>

class QQmlEngine;
class QQuickView;

namespace ledgewise {

class GlobalClickMonitor;
class SurfaceShadow;

// One side surface on one display: its window, its model and the rules that move it
// between sleeping, glance, active and expanded. Owns everything it made: the window,
// the hide timer, the animation and, while expanded, the click-outside monitors.
class NotchWindowController : public QObject,
                              public DragDestinationHandling,
                              private SurfaceEnvironment,
                              private SurfaceEffects
{
    Q_OBJECT
    Q_PROPERTY(ledgewise::NotchSurfaceModel *surface READ surface CONSTANT)
    Q_PROPERTY(double pillRadius READ pillRadius NOTIFY outlineChanged)
    Q_PROPERTY(double fillOpacity READ fillOpacity NOTIFY appearanceChanged)
    Q_PROPERTY(bool classicRim READ classicRim NOTIFY appearanceChanged)
    Q_PROPERTY(QList<QObject *> modules READ modules NOTIFY appearanceChanged)
    Q_PROPERTY(QString dropSummary READ dropSummary NOTIFY dropChanged)
    Q_PROPERTY(QVariantList dropActions READ dropActions CONSTANT)
    Q_PROPERTY(QString dropNotice READ dropNotice NOTIFY dropChanged)
    Q_PROPERTY(QObject *saves READ saves CONSTANT)
    Q_PROPERTY(QObject *devices READ devices CONSTANT)

public:
    NotchWindowController(NotchSide side, const DisplaySnapshot &display, SurfaceContext *context, QQmlEngine &engine,
        QObject *parent = nullptr);
    ~NotchWindowController() override;

    static QString windowTitle(NotchSide side);

    NotchSide side() const { return m_surface.side(); }
    NotchSurfaceModel *surface() { return &m_surface; }
    const DisplaySnapshot &display() const { return m_display; }
    QQuickView *window() const { return m_window.get(); }
    // The window of the shadow while an open surface casts one, else nullptr.
    QQuickView *shadowWindow() const;
    SurfaceBehaviour &behaviour() { return m_behaviour; }

    // The panel's frame in Qt's coordinates, where it is now.
    QRect frameInScreen() const;
    // Where the layout puts the panel for a presentation, in Qt's coordinates.
    QRect targetFrame(NotchPresentation presentation) const;

    void show();
    void presentFromCenter();
    void close();
    // New preferences or a new snapshot of the same display: reshape without animation.
    void moveToCurrentPresentation(const DisplaySnapshot &display);

    // QML
    // The corner radius of the outline the surface has now: the fill is drawn with it,
    // the window is cut to it and the drag catcher takes drops inside it.
    double pillRadius() const { return m_outlineRadius; }
    double fillOpacity() const;
    bool classicRim() const;
    QList<QObject *> modules() const;
    QString dropSummary() const;
    // Every drop action with its title and symbol, in the order offered.
    static QVariantList dropActions();
    // Why the last action on the drop did nothing, such as Open refusing a link.
    QString dropNotice() const { return m_dropNotice; }
    // The saves of drops under way (DropSaves), or nullptr without an application.
    QObject *saves() const;
    // The paired phones Send to Device reaches, or nullptr without an application.
    QObject *devices() const;
    Q_INVOKABLE void hoverChanged(bool hovering);
    Q_INVOKABLE void clicked();
    Q_INVOKABLE void secondaryClicked();
    Q_INVOKABLE void performDropAction(const QString &action);

    // Drag hooks, called by the drag catcher.
    void dragDidEnter(std::shared_ptr<const DropPayload> payload) override;
    void dragDidExit() override;
    void dragDidDrop(std::shared_ptr<const DropPayload> payload) override;

    // The move between frames and the fade that marks a change made without animation.
    const QVariantAnimation &moveAnimation() const { return m_animation; }
    const QVariantAnimation &fadeAnimation() const { return m_fade; }

    // The duration of an animated move, in milliseconds, for a speed preference.
    static int animationDurationMs(double animationSpeed, bool reduceMotion);

signals:
    void appearanceChanged();
    void outlineChanged();
    void dropChanged();
    // A click on a collapsed surface: the notch controller decides which one toggles.
    void toggleRequested(ledgewise::NotchSide side);
    void contextMenuRequested(QPoint globalPosition);
    // A move reached its frame (animated or not).
    void moveFinished();

private:
    // A dialog of ours waits for the user: the surface waits with it.
    bool ownDialogOpen() const;

    // SurfaceEnvironment
    bool hasApplication() const override { return !m_context.isNull(); }
    Preferences preferences() const override;
    QList<ModuleGlance> modules(NotchSide side) const override;
    std::optional<ModuleGlance> activeGlance() const override;
    // SurfaceEffects
    void presentationDidChange(NotchPresentation presentation, bool animated) override;
    void scheduleHide(double seconds) override;
    void cancelHide() override;

    void move(NotchPresentation presentation, bool animated);
    void animate(const QRect &to);
    void applyFrame(const QRect &frame);
    void updateShadow(NotchPresentation presentation);
    void followTextFocus();
    void pressedInSurface();
    void installCollapseMonitors();
    void removeCollapseMonitors();
    void pressedAnywhere(int button, quint32 time);
    void collapseIfClickOutside();
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool reduceMotion() const;

    QPointer<SurfaceContext> m_context;
    QQmlEngine *m_engine;
    DisplaySnapshot m_display;
    NotchSurfaceModel m_surface;
    SurfaceBehaviour m_behaviour;
    std::unique_ptr<QQuickView> m_window;
    std::unique_ptr<DragCatcher> m_catcher;
    std::unique_ptr<SurfaceShadow> m_shadow;
    std::unique_ptr<GlobalClickMonitor> m_globalMonitor;
    bool m_localMonitor = false;
    QString m_dropNotice;
    // Set with each frame the window takes (applyFrame), and only there.
    double m_outlineRadius = 0;
    // X time of the last press Qt delivered inside one of our own dialogs or menus: the
    // global monitor's report of that same press is not a click elsewhere.
    quint32 m_lastOwnWindowPress = 0;
    QTimer m_hideWork;
    QVariantAnimation m_animation;
    QVariantAnimation m_fade;
};

} // namespace ledgewise
