// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_behaviour.h"

namespace ledgewise {

SurfaceBehaviour::SurfaceBehaviour(NotchSurfaceModel &surface, SurfaceEnvironment &environment, SurfaceEffects &effects)
    : m_surface(surface)
    , m_environment(environment)
    , m_effects(effects)
{ }

bool SurfaceBehaviour::automaticallyHide() const
{
    return m_environment.hasApplication() && m_environment.preferences().automaticallyHide;
}

void SurfaceBehaviour::setPresentation(NotchPresentation presentation, bool animated)
{
    m_surface.setPresentation(presentation);
    m_effects.presentationDidChange(presentation, animated);
}

void SurfaceBehaviour::refreshGlance()
{
    const auto active = m_environment.activeGlance();
    if (!active) {
        m_surface.setActiveText(std::nullopt);
        const QList<ModuleGlance> modules = m_environment.modules(m_surface.side());
        // A side without modules keeps whatever it showed before.
        if (!modules.isEmpty()) {
            const ModuleGlance &first = modules.constFirst();
            m_surface.setGlanceSymbol(first.symbol);
            m_surface.setGlanceText(first.text);
        }
        if (m_surface.presentation() == NotchPresentation::active)
            setPresentation(NotchPresentation::sleeping, true);
        return;
    }

    // An active module (a running countdown) shows on every surface, whichever side
    // hosts it.
    m_surface.setActiveText(active->text);
    m_surface.setGlanceSymbol(active->symbol);
    m_surface.setGlanceText(active->text);
    if (m_surface.presentation() == NotchPresentation::sleeping)
        setPresentation(NotchPresentation::active, true);
}

void SurfaceBehaviour::collapse()
{
    m_surface.setDropPayload(nullptr);
    m_surface.setReceivingDrop(false);
    if (const auto activeText = m_surface.activeText()) {
        if (!m_environment.hasApplication()) {
            setPresentation(NotchPresentation::sleeping, true);
            return;
        }
        if (m_environment.activeGlance()) {
            m_surface.setPresentation(NotchPresentation::active);
            m_surface.setGlanceText(*activeText);
            setPresentation(NotchPresentation::active, true);
            return;
        }
    }
    setPresentation(NotchPresentation::sleeping, true);
}

void SurfaceBehaviour::toggleExpanded()
{
    if (m_surface.presentation() == NotchPresentation::expanded) {
        collapse();
        return;
    }
    m_effects.cancelHide();
    setPresentation(NotchPresentation::expanded, true);
}

void SurfaceBehaviour::handleHover(bool hovering)
{
    m_isHovering = hovering;
    m_effects.cancelHide();
    const NotchPresentation presentation = m_surface.presentation();
    if (hovering) {
        if (presentation == NotchPresentation::sleeping || presentation == NotchPresentation::active) {
            // Copies and downloads arrive while the surface sleeps: the glance shows the
            // newest of them, not what was there when it last refreshed.
            refreshGlance();
            setPresentation(NotchPresentation::glance, true);
        }
        return;
    }
    if (presentation == NotchPresentation::expanded) {
        // An open panel stays open unless the user asked surfaces to hide by themselves.
        if (automaticallyHide())
            m_effects.scheduleHide(expandedHideDelay);
        return;
    }
    m_effects.scheduleHide(automaticallyHide() ? hideDelayAutomatic : hideDelay);
}

void SurfaceBehaviour::hideDidFire()
{
    if (m_isHovering)
        return;
    if (m_surface.presentation() != NotchPresentation::expanded || automaticallyHide())
        collapse();
}

void SurfaceBehaviour::clickedOutside()
{
    if (m_surface.presentation() == NotchPresentation::expanded)
        collapse();
}

void SurfaceBehaviour::dragDidEnter(std::shared_ptr<const DropPayload> payload)
{
    m_effects.cancelHide();
    m_surface.setReceivingDrop(true);
    m_surface.setDropPayload(std::move(payload));
    setPresentation(NotchPresentation::expanded, true);
}

void SurfaceBehaviour::dragDidExit()
{
    m_surface.setReceivingDrop(false);
    if (m_surface.presentation() == NotchPresentation::expanded)
        collapse();
}

void SurfaceBehaviour::dragDidDrop(std::shared_ptr<const DropPayload> payload)
{
    m_surface.setReceivingDrop(false);
    m_surface.setDropPayload(std::move(payload));
    setPresentation(NotchPresentation::expanded, true);
}

} // namespace ledgewise
