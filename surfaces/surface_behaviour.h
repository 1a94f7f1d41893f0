// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "surfaces/notch_surface_model.h"

#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace ledgewise {

// A module's glance as the surface reads it.
struct ModuleGlance {
    QString symbol;
    QString text;
    // Something under way that every surface shows, such as a running countdown.
    bool active = false;
};

// What the rules of one surface read from the rest of the program. When the
// application is gone (`hasApplication()` false) the defaults stand in.
class SurfaceEnvironment
{
public:
    virtual ~SurfaceEnvironment() = default;
    virtual bool hasApplication() const = 0;
    virtual Preferences preferences() const = 0;
    // The glances of the modules a side hosts, in the user's order.
    virtual QList<ModuleGlance> modules(NotchSide side) const = 0;
    // The glance of a catalogued module that is active, on whichever side it is (or on
    // none); nothing while no module is.
    virtual std::optional<ModuleGlance> activeGlance() const = 0;
};

// What the rules make the window do.
class SurfaceEffects
{
public:
    virtual ~SurfaceEffects() = default;
    // Shadow, click-outside monitors and the move to the presentation's frame.
    virtual void presentationDidChange(NotchPresentation presentation, bool animated) = 0;
    // The single pending hide: starting one replaces the previous.
    virtual void scheduleHide(double seconds) = 0;
    virtual void cancelHide() = 0;
};

// The presentation state machine and the glance rule of one surface. Pure: the window
// controller feeds it pointer, toggle, drag and timer events and carries out its
// effects.
class SurfaceBehaviour
{
public:
    SurfaceBehaviour(NotchSurfaceModel &surface, SurfaceEnvironment &environment, SurfaceEffects &effects);

    void setPresentation(NotchPresentation presentation, bool animated);
    void refreshGlance();
    void collapse();
    void toggleExpanded();
    void handleHover(bool hovering);
    // The pending hide ran out.
    void hideDidFire();
    // A mouse button went down outside the panel.
    void clickedOutside();
    void dragDidEnter(std::shared_ptr<const DropPayload> payload);
    void dragDidExit();
    void dragDidDrop(std::shared_ptr<const DropPayload> payload);

    bool isHovering() const { return m_isHovering; }

    // The hide delays, in seconds.
    static constexpr double hideDelayAutomatic = 0.2;
    static constexpr double hideDelay = 0.35;
    static constexpr double expandedHideDelay = 1.2;

private:
    bool automaticallyHide() const;

    NotchSurfaceModel &m_surface;
    SurfaceEnvironment &m_environment;
    SurfaceEffects &m_effects;
    bool m_isHovering = false;
};

} // namespace ledgewise
