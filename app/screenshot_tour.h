// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

namespace ledgewise {

class AppModel;

// On a virtual display nobody can look at, Ledgewise shows what it draws: it walks the
// left surface through sleeping, glance, expanded, a drop and a running countdown,
// writes a screenshot of the screen at each step into a folder
// (LEDGEWISE_SCREENSHOT_DIR) and says where each one is.
class ScreenshotTour : public QObject
{
    Q_OBJECT

public:
    ScreenshotTour(QString directory, AppModel &model, QObject *parent = nullptr);

    // Folder from the environment, or empty when no tour is wanted.
    static QString directoryFromEnvironment();

    void start();

    // Saves the primary screen as NAME.png; returns the path, or empty on failure.
    QString capture(const QString &name) const;

private:
    struct Step {
        QString name;
        std::function<void()> before;
    };
    void runStep(int index);

    QString m_directory;
    AppModel &m_model;
    QList<Step> m_steps;
};

} // namespace ledgewise
