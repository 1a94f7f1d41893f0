// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences_store.h"
#include "modules/ledgewise_module.h"

#include <QTimer>
#include <QVariantList>

namespace ledgewise {

class FileChooser;
class ProgramLauncher;
class UrlOpener;

// The pinned apps, files and sites as a surface module. The entries live in the
// preferences record; every change goes through the store, which saves at once.
class LauncherModule final : public LedgewiseModule
{
    Q_OBJECT
    // One map per entry, in list order: id, title, symbol.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)
    // One short line after an open that did nothing for a reason the user must know (a
    // pinned file replaced by another since); empty otherwise, and again after a while.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    LauncherModule(PreferencesStore &store, FileChooser &chooser, UrlOpener &opener, ProgramLauncher &launcher,
        QObject *parent = nullptr);

    QVariantList rows() const;
    QString notice() const { return m_notice; }

    // The typed address rule; true when an entry was added (the field is then cleared).
    Q_INVOKABLE bool addWebsite(const QString &draft);
    // "App" and "File": show the file chooser and return at once (a view's handler
    // calls them); the chosen entry is appended when the chooser answers.
    Q_INVOKABLE void addApplication();
    Q_INVOKABLE void addFile();
    Q_INVOKABLE void remove(const QString &id);
    Q_INVOKABLE void open(const QString &id);

    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

signals:
    void rowsChanged();
    void noticeChanged();

private:
    void append(const LauncherItem &item);
    void pickAndAppend(LauncherItem::Kind kind);
    void setNotice(const QString &notice);

    PreferencesStore &m_store;
    FileChooser &m_chooser;
    UrlOpener &m_opener;
    ProgramLauncher &m_launcher;
    QString m_notice;
    QTimer m_noticeExpiry;
};

} // namespace ledgewise
