#pragma once

#include "platform/clipboard/pasteboard.h"

#include <QMimeData>

#include <memory>

namespace ledgewise {

// An in-memory clipboard. `announce` chooses whether changes are signalled (as on
// X11) or only counted (as where a reader has to poll).
class FakePasteboard final : public Pasteboard
{
    Q_OBJECT

public:
    explicit FakePasteboard(bool announce = true) : m_announce(announce) {}

    qint64 changeCount() const override { return m_changeCount; }
    bool announcesChanges() const override { return m_announce; }
    QStringList types() const override { return m_contents ? m_contents->formats() : QStringList(); }
    QByteArray data(const QString &mimeType) const override
    {
        return m_contents ? m_contents->data(mimeType) : QByteArray();
    }
    void clearContents() override
    {
        m_contents.reset();
        ++clears;
        changedByUs();
    }
    void setContents(QMimeData *contents) override
    {
        m_contents.reset(contents);
        changedByUs();
    }

    // Another application copies something.
    void copyFromElsewhere(QMimeData *contents)
    {
        m_contents.reset(contents);
        changedByUs();
    }

    const QMimeData *contents() const { return m_contents.get(); }
    int clears = 0;

private:
    void changedByUs()
    {
        ++m_changeCount;
        if (m_announce)
            emit changed();
    }

    bool m_announce;
    qint64 m_changeCount = 0;
    std::unique_ptr<QMimeData> m_contents;
};

} // namespace ledgewise
