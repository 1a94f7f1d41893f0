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
// identity, and the view an expanded surface hosts for it. The view is a QML component
// (a URL) plus the initial properties it is created with, so a surface can host any
// module with one Loader and no knowledge of the module's type.
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

public:
    ModuleID id() const { return m_id; }
    QString rawId() const { return rawValue(m_id); }
    QString title() const { return ledgewise::title(m_id); }
    QString systemImage() const { return ledgewise::systemImage(m_id); }

    virtual QUrl expandedView() const = 0;
    virtual QVariantMap expandedViewProperties() const { return {}; }

protected:
    explicit LedgewiseModule(ModuleID id, QObject *parent = nullptr)
        : QObject(parent)
        , m_id(id)
    {
    }

    // A component of this project's QML modules, by its module path and file name.
    static QUrl qmlComponent(const QString &modulePath, const QString &fileName)
    {
        return QUrl(QStringLiteral("qrc:/qt/qml/%1/%2").arg(modulePath, fileName));
    }

private:
    const ModuleID m_id;
};

} // namespace ledgewise
