// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/qml_modules.h"

#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>

// The QML modules are static libraries; importing their plugins here keeps the
// linker from dropping their type registrations.
Q_IMPORT_QML_PLUGIN(Ledgewise_SurfacesPlugin)
Q_IMPORT_QML_PLUGIN(Ledgewise_ModulesPlugin)
Q_IMPORT_QML_PLUGIN(Ledgewise_DragDropPlugin)

namespace ledgewise {

void addLedgewiseQmlModules(QQmlEngine &engine)
{
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

} // namespace ledgewise
