#pragma once

#include "modules/clipboard/clipboard_store.h"
#include "modules/ledgewise_module.h"

#include <QVariantList>

namespace ledgewise {

// The clipboard history as a surface module: its panel lists the entries, copies one
// back on a click, and pins or deletes entries.
class ClipboardModule final : public LedgewiseModule
{
    Q_OBJECT
    // One map per entry, newest first: id, title, kindLabel, symbol, thumbnail (a file
    // URL, empty when there is no picture), isPinned.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)

public:
    explicit ClipboardModule(ClipboardStore &store, QObject *parent = nullptr);

    ClipboardStore &store() const { return m_store; }
    QVariantList rows() const;

    Q_INVOKABLE void copyBack(const QString &id);
    Q_INVOKABLE void togglePin(const QString &id);
    Q_INVOKABLE void remove(const QString &id);

    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

signals:
    void rowsChanged();

private:
    const ClipboardItem *find(const QString &id) const;

    ClipboardStore &m_store;
};

} // namespace ledgewise
