// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "surfaces/notch_side.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>

namespace ledgewise {

struct DropPayload;

// The observable state of one side surface: what its view draws and what its window
// controller changes. A fresh model sleeps with the placeholder glance until the first
// glance refresh.
class NotchSurfaceModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Surface models are made by their window controller")
    Q_PROPERTY(QString side READ rawSide CONSTANT)
    Q_PROPERTY(QString presentation READ rawPresentation NOTIFY presentationChanged)
    Q_PROPERTY(bool isReceivingDrop READ isReceivingDrop NOTIFY isReceivingDropChanged)
    Q_PROPERTY(bool hasDropPayload READ hasDropPayload NOTIFY dropPayloadChanged)
    Q_PROPERTY(QString glanceSymbol READ glanceSymbol NOTIFY glanceSymbolChanged)
    Q_PROPERTY(QString glanceText READ glanceText NOTIFY glanceTextChanged)
    Q_PROPERTY(QString activeText READ activeTextOrEmpty NOTIFY activeTextChanged)

public:
    explicit NotchSurfaceModel(NotchSide side, QObject *parent = nullptr);
    ~NotchSurfaceModel() override;

    NotchSide side() const { return m_side; }
    QString rawSide() const { return rawValue(m_side); }

    NotchPresentation presentation() const { return m_presentation; }
    QString rawPresentation() const { return rawValue(m_presentation); }
    void setPresentation(NotchPresentation presentation);

    bool isReceivingDrop() const { return m_isReceivingDrop; }
    void setReceivingDrop(bool receiving);

    // What was dragged in or dropped; while present, the expanded surface offers the
    // drop actions instead of its modules.
    const DropPayload *dropPayload() const { return m_dropPayload.get(); }
    bool hasDropPayload() const { return m_dropPayload != nullptr; }
    void setDropPayload(std::shared_ptr<const DropPayload> payload);

    QString glanceSymbol() const { return m_glanceSymbol; }
    void setGlanceSymbol(const QString &symbol);
    QString glanceText() const { return m_glanceText; }
    void setGlanceText(const QString &text);

    // The running countdown's text; present exactly while a countdown runs.
    const std::optional<QString> &activeText() const { return m_activeText; }
    QString activeTextOrEmpty() const { return m_activeText.value_or(QString()); }
    void setActiveText(const std::optional<QString> &text);

signals:
    void presentationChanged();
    void isReceivingDropChanged();
    void dropPayloadChanged();
    void glanceSymbolChanged();
    void glanceTextChanged();
    void activeTextChanged();

private:
    const NotchSide m_side;
    NotchPresentation m_presentation = NotchPresentation::sleeping;
    bool m_isReceivingDrop = false;
    std::shared_ptr<const DropPayload> m_dropPayload;
    QString m_glanceSymbol = QStringLiteral("circle.fill");
    QString m_glanceText = QStringLiteral("Ledgewise");
    std::optional<QString> m_activeText;
};

} // namespace ledgewise
