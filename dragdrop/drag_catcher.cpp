#include "dragdrop/drag_catcher.h"

#include <QDropEvent>
#include <QMimeData>
#include <QPainterPath>
#include <QWindow>

#include <algorithm>

namespace ledgewise {

DragCatcher::DragCatcher(QObject *parent)
    : QObject(parent)
{
}

void DragCatcher::setHandler(DragDestinationHandling *handler, QObject *guard)
{
    m_handler = handler;
    m_guard = guard;
}

bool DragCatcher::contains(const QSizeF &bounds, const QPointF &point) const
{
    // A radius beyond half the shorter side rounds the shape into a capsule.
    const double radius = std::min({m_pillCornerRadius, bounds.width() / 2, bounds.height() / 2});
    QPainterPath shape;
    shape.addRoundedRect(QRectF(QPointF(0, 0), bounds), radius, radius);
    return shape.contains(point);
}

bool DragCatcher::draggingEntered(const QMimeData &data)
{
    const auto payload = DropPayload::from(data);
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
    return DropPayload::from(data).has_value();
}

bool DragCatcher::performDragOperation(const QMimeData &data)
{
    const auto payload = DropPayload::from(data);
    if (!payload)
        return false;
    if (auto *target = handler())
        target->dragDidDrop(std::make_shared<const DropPayload>(*payload));
    return true;
}

bool DragCatcher::eventFilter(QObject *watched, QEvent *event)
{
    auto *window = qobject_cast<QWindow *>(watched);
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto *drag = static_cast<QDragMoveEvent *>(event);
        const bool inside = !window || contains(window->size(), drag->position());
        const bool copy = inside
            && (event->type() == QEvent::DragEnter ? draggingEntered(*drag->mimeData())
                                                   : draggingUpdated(*drag->mimeData()));
        if (copy) {
            drag->setDropAction(Qt::CopyAction);
            drag->accept();
        } else {
            drag->ignore();
        }
        return true;
    }
    case QEvent::DragLeave:
        draggingExited();
        return true;
    case QEvent::Drop: {
        auto *drop = static_cast<QDropEvent *>(event);
        const bool accepted = prepareForDragOperation(*drop->mimeData()) && performDragOperation(*drop->mimeData());
        if (accepted) {
            drop->setDropAction(Qt::CopyAction);
            drop->accept();
        } else {
            drop->ignore();
        }
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}

} // namespace ledgewise
