// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/update_window.h"

#include "updates/update_controller.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

// The view's module is a static library; importing its plugin keeps its files linked.
Q_IMPORT_QML_PLUGIN(Ledgewise_UpdatesPlugin)

namespace ledgewise {

UpdateWindow::UpdateWindow(UpdateController &controller, QQmlEngine &engine, QObject *parent)
    : QObject(parent)
    , m_controller(controller)
    , m_engine(engine)
{
    connect(&m_controller, &UpdateController::presentRequested, this, &UpdateWindow::show);
}

UpdateWindow::~UpdateWindow() = default;

void UpdateWindow::show(bool activate)
{
    if (!m_window) {
        QQmlComponent component(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Ledgewise/Updates/UpdateWindow.qml")));
        std::unique_ptr<QObject> root(component.createWithInitialProperties(
            { { QStringLiteral("controller"), QVariant::fromValue(&m_controller) } }));
        auto *window = qobject_cast<QQuickWindow *>(root.get());
        if (!window) {
            // Only a broken build gets here; say why rather than show nothing silently.
            std::fprintf(stderr, "Ledgewise cannot show its update window: %s\n", qPrintable(component.errorString()));
            return;
        }
        root.release();
        m_window.reset(window);
        m_window->setTitle(QString::fromLatin1(title));
    }
    m_window->show();
    m_window->raise();
    if (activate)
        m_window->requestActivate();
}

} // namespace ledgewise
