// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_surface_model.h"

namespace ledgewise {

NotchSurfaceModel::NotchSurfaceModel(NotchSide side, QObject *parent)
    : QObject(parent)
    , m_side(side)
{ }

NotchSurfaceModel::~NotchSurfaceModel() = default;

void NotchSurfaceModel::setPresentation(NotchPresentation presentation)
{
    if (m_presentation == presentation)
        return;
    m_presentation = presentation;
    emit presentationChanged();
}

void NotchSurfaceModel::setReceivingDrop(bool receiving)
{
    if (m_isReceivingDrop == receiving)
        return;
    m_isReceivingDrop = receiving;
    emit isReceivingDropChanged();
}

void NotchSurfaceModel::setDropPayload(std::shared_ptr<const DropPayload> payload)
{
    if (m_dropPayload == payload)
        return;
    m_dropPayload = std::move(payload);
    emit dropPayloadChanged();
}

void NotchSurfaceModel::setGlanceSymbol(const QString &symbol)
{
    if (m_glanceSymbol == symbol)
        return;
    m_glanceSymbol = symbol;
    emit glanceSymbolChanged();
}

void NotchSurfaceModel::setGlanceText(const QString &text)
{
    if (m_glanceText == text)
        return;
    m_glanceText = text;
    emit glanceTextChanged();
}

void NotchSurfaceModel::setActiveText(const std::optional<QString> &text)
{
    if (m_activeText == text)
        return;
    m_activeText = text;
    emit activeTextChanged();
}

} // namespace ledgewise
