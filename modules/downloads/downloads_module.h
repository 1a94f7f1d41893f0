// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/downloads/downloads_store.h"
#include "modules/ledgewise_module.h"

#include <QVariantList>

namespace ledgewise {

class UrlOpener;

// The newest Downloads as a surface module: its panel lists them with their state and
// opens one with its default application on a click.
class DownloadsModule final : public LedgewiseModule
{
    Q_OBJECT
    // One map per file, newest first: name (readable even when the file's name is not
    // UTF-8), state ("Downloading…" or "Ready"), url (keeping the name's real bytes).
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)

public:
    DownloadsModule(DownloadsStore &store, UrlOpener &opener, QObject *parent = nullptr);

    QVariantList rows() const { return m_rows; }
    // Opens the file, even while it is still downloading; a file that is gone opens nothing
    // and says nothing.
    Q_INVOKABLE void open(const QString &url);

    static QString stateLabel(DownloadItem::Status status);

    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

signals:
    void rowsChanged();

private:
    void glanceAtNewest();
    static QVariantList rowsOf(const QList<DownloadItem> &items);

    DownloadsStore &m_store;
    UrlOpener &m_opener;
    QVariantList m_rows;
};

} // namespace ledgewise
