// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"

#include <QObject>
#include <QUrl>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace ledgewise {

// What every module offers the surfaces: its identity, the title and symbol of that
// identity, its glance, and the view an expanded surface hosts for it. The view is a QML
// component (a URL) plus the initial properties it is created with, so a surface can
// host any module with one Loader and no knowledge of the module's type.
//
// The glance is what a collapsed surface shows for the module: a symbol, a text, and
// whether the module is active (something under way that every surface shows, whichever
// side hosts the module). Each module keeps it current from its own store and says so
// with `glanceChanged`; until it does, a module glances its symbol and title.
class LedgewiseModule : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules are created by the application")
    Q_PROPERTY(QString id READ rawId CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString systemImage READ systemImage CONSTANT)
    Q_PROPERTY(QUrl expandedView READ expandedView CONSTANT)
    Q_PROPERTY(QVariantMap expandedViewProperties READ expandedViewProperties CONSTANT)
    Q_PROPERTY(QString glanceSymbol READ glanceSymbol NOTIFY glanceChanged)
    Q_PROPERTY(QString glanceText READ glanceText NOTIFY glanceChanged)
    Q_PROPERTY(bool glanceActive READ glanceActive NOTIFY glanceChanged)

public:
    ModuleID id() const { return m_id; }
    QString rawId() const { return rawValue(m_id); }
    QString title() const { return ledgewise::title(m_id); }
    QString systemImage() const { return ledgewise::systemImage(m_id); }

    virtual QUrl expandedView() const = 0;
    virtual QVariantMap expandedViewProperties() const { return {}; }

    QString glanceSymbol() const { return m_glanceSymbol; }
    QString glanceText() const { return m_glanceText; }
    bool glanceActive() const { return m_glanceActive; }

signals:
    // The glance's symbol, text or activity changed; never sent for the same glance.
    void glanceChanged();

protected:
    explicit LedgewiseModule(ModuleID id, QObject *parent = nullptr)
        : QObject(parent)
        , m_id(id)
        , m_glanceSymbol(ledgewise::systemImage(id))
        , m_glanceText(ledgewise::title(id))
    { }

    void setGlance(const QString &symbol, const QString &text, bool active = false)
    {
        if (symbol == m_glanceSymbol && text == m_glanceText && active == m_glanceActive)
            return;
        m_glanceSymbol = symbol;
        m_glanceText = text;
        m_glanceActive = active;
        emit glanceChanged();
    }

    // A component of this project's QML modules, by its module path and file name.
    static QUrl qmlComponent(const QString &modulePath, const QString &fileName)
    {
        return QUrl(QStringLiteral("qrc:/qt/qml/%1/%2").arg(modulePath, fileName));
    }

private:
    const ModuleID m_id;
    QString m_glanceSymbol;
    QString m_glanceText;
    bool m_glanceActive = false;
};

} // namespace ledgewise
