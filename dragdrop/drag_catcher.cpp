// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drag_catcher.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainterPath>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace ledgewise {

DragCatcher::DragCatcher(QObject *parent)
    : QObject(parent)
{ }

void DragCatcher::setHandler(DragDestinationHandling *handler, QObject *guard)
{
    m_handler = handler;
    m_guard = guard;
}

bool DragCatcher::contains(const QSizeF &bounds, const QPointF &point) const
{
    // A radius beyond half the shorter side rounds the shape into a capsule.
    const double radius = std::min({ m_pillCornerRadius, bounds.width() / 2, bounds.height() / 2 });
    QPainterPath shape;
    shape.addRoundedRect(QRectF(QPointF(0, 0), bounds), radius, radius);
    return shape.contains(point);
}

bool DragCatcher::draggingEntered(const QMimeData &data)
{
    // An image is decoded only once it is dropped: a drag may enter many times first.
    const auto payload = DropPayload::from(data, DropPayload::ImageReading::defer);
    m_enteredPayload = payload;
    if (!payload)
        return false;
    if (auto *target = handler())
        target->dragDidEnter(std::make_shared<const DropPayload>(*payload));
    return true;
}

bool DragCatcher::draggingUpdated(const QMimeData &data) const
{
    // Deliberately lenient: any type at all keeps the copy offer; a drag whose entry
    // was refused is refused again before the drop.
    return !data.formats().isEmpty();
}

void DragCatcher::draggingExited()
{
    if (auto *target = handler())
        target->dragDidExit();
}

bool DragCatcher::prepareForDragOperation(const QMimeData &data) const
{
    return DropPayload::from(data, DropPayload::ImageReading::defer).has_value();
}

bool DragCatcher::performDragOperation(const QMimeData &data)
{
    return deliverDrop(DropPayload::from(data));
}

bool DragCatcher::deliverDrop(std::optional<DropPayload> payload)
{
    if (!payload)
        return false;
    if (auto *target = handler())
        target->dragDidDrop(std::make_shared<const DropPayload>(std::move(*payload)));
    return true;
}

bool DragCatcher::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::DragLeave:
        break;
    default:
        return QObject::eventFilter(watched, event);
    }

    // The window hears of the drag wherever it is over it, the corners outside the
    // rounded shape included; the catcher only counts what happens inside the shape,
    // so a crossing of the shape's edge is an entry or an exit.
    auto *window = qobject_cast<QWindow *>(watched);
    const auto insideShape = [&](const QPointF &point) { return !window || contains(window->size(), point); };

    if (event->type() == QEvent::DragLeave) {
        const bool wasInside = m_dragInside;
        m_dragLetIn = m_dragInside = false;
        m_enteredPayload.reset();
        m_acceptedAt.reset();
        if (wasInside)
            draggingExited();
        return true;
    }

    auto *drop = static_cast<QDropEvent *>(event);
    if (event->type() == QEvent::DragEnter) {
        // A new drag: one that was never seen leaving has left.
        if (std::exchange(m_dragInside, false))
            draggingExited();
        m_enteredPayload.reset();
        m_acceptedAt.reset();
        m_dragLetIn = drop->mimeData() && DropPayload::offersRegisteredType(*drop->mimeData());
    }
    // A drag that offers nothing a surface takes never reaches the catcher.
    if (!m_dragLetIn || !drop->mimeData()) {
        drop->ignore();
        return true;
    }
    const QMimeData &data = *drop->mimeData();

    bool copy = false;
    if (event->type() == QEvent::Drop) {
        const bool wasInside = std::exchange(m_dragInside, false);
        const auto acceptedAt = std::exchange(m_acceptedAt, std::nullopt);
        m_dragLetIn = false;
        const auto entered = std::exchange(m_enteredPayload, std::nullopt);
        // The drag source lets go only where we last said yes, and sends a position only
        // when the pointer moves. A surface opens under a pointer that has not moved
        // since: the drop still names the point measured against the small window, which
        // may lie outside the opened outline (or, on a window that grew to the left,
        // somewhere else altogether). Where the user let go is where we said yes.
        const bool inside = (wasInside && acceptedAt == drop->position()) || insideShape(drop->position());
        if (wasInside && !inside) {
            draggingExited();
        } else if (inside) {
            // Read once: checking that a payload can be read and taking it are the same
            // read. A text is kept as offered; only an action converts it whole.
            copy = deliverDrop(DropPayload::from(data));
            // Qt on X11 now and then hands the drop over without fetching its data from
            // the other application, although the same drag read fine when it came in.
            // The user did drop something: take what the drag carried then.
            if (!copy && wasInside && entered) {
                DropPayload payload = *entered;
                if (payload.decodeImage()) {
                    if (auto *target = handler())
                        target->dragDidDrop(std::make_shared<const DropPayload>(std::move(payload)));
                    copy = true;
                }
            }
            // A refused drop over the shape leaves it as a drag that went away would.
            if (!copy && wasInside)
                draggingExited();
        }
    } else {
        const bool inside = insideShape(drop->position());
        if (inside && !m_dragInside) {
            m_dragInside = true;
            copy = draggingEntered(data);
        } else if (!inside && m_dragInside) {
            m_dragInside = false;
            draggingExited();
        } else if (inside) {
            copy = draggingUpdated(data);
        }
        m_acceptedAt = copy ? std::optional(drop->position()) : std::nullopt;
    }

    if (copy) {
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
    } else {
        drop->ignore();
    }
    return true;
}

} // namespace ledgewise
