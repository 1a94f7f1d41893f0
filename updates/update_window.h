// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <memory>

class QQmlEngine;
class QQuickWindow;

namespace ledgewise {

class UpdateController;

// The small window that shows what an update check found. Made from UpdateWindow.qml
// the first time a check asks for it, kept (hidden when closed) until Ledgewise ends.
class UpdateWindow : public QObject
{
    Q_OBJECT

public:
    static constexpr auto title = "Ledgewise Updates";

    UpdateWindow(UpdateController &controller, QQmlEngine &engine, QObject *parent = nullptr);
    ~UpdateWindow() override;

    // Shows the window (making it first if needed), and gives it the keyboard when
    // `activate` is true.
    void show(bool activate = true);
    // None before the first show.
    QQuickWindow *window() const { return m_window.get(); }

private:
    UpdateController &m_controller;
    QQmlEngine &m_engine;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace ledgewise
