// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/qt_pasteboard.h"

#include "platform/clipboard/x11_selection_reader.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace ledgewise {

QtPasteboard::QtPasteboard(QObject *parent)
    : Pasteboard(parent)
    , m_clipboard(QGuiApplication::clipboard())
{
    connect(m_clipboard, &QClipboard::dataChanged, this, &QtPasteboard::clipboardChanged);
}

bool QtPasteboard::announcesChanges() const
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

QStringList QtPasteboard::types() const
{
    const QMimeData *data = m_clipboard->mimeData(QClipboard::Clipboard);
    return data ? data->formats() : QStringList();
}

QByteArray QtPasteboard::data(const QString &mimeType) const
{
    const QMimeData *data = m_clipboard->mimeData(QClipboard::Clipboard);
    return data ? data->data(mimeType) : QByteArray();
}

void QtPasteboard::clearContents()
{
    m_clipboard->clear(QClipboard::Clipboard);
}

void QtPasteboard::setContents(QMimeData *contents)
{
    m_clipboard->setMimeData(contents, QClipboard::Clipboard);
}

Pasteboard::BackgroundReader QtPasteboard::backgroundReader() const
{
    if (!announcesChanges())
        return {};
    return [](const std::atomic_bool &cancelled) -> std::unique_ptr<Pasteboard> {
        auto reader = std::make_unique<X11SelectionReader>(cancelled);
        if (!reader->isOpen())
            return nullptr;
        return reader;
    };
}

void QtPasteboard::clipboardChanged()
{
    ++m_changeCount;
    emit changed();
}

} // namespace ledgewise
