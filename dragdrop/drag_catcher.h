// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_payload.h"

#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QSizeF>

#include <memory>

class QMimeData;

namespace ledgewise {

// Who hears about drags over a surface.
class DragDestinationHandling
{
public:
    virtual ~DragDestinationHandling() = default;
    virtual void dragDidEnter(std::shared_ptr<const DropPayload> payload) = 0;
    virtual void dragDidExit() = 0;
    virtual void dragDidDrop(std::shared_ptr<const DropPayload> payload) = 0;
};

// Takes drags onto a surface: reads the payload afresh at entry and once at the drop
// (an offered image is decoded only at the drop), offers only copying (a drop never
// moves the source's files), and answers only inside the rounded shape; a drop at the
// point last answered with copy is taken even if the window has since opened around it.
class DragCatcher : public QObject
{
    Q_OBJECT

public:
    explicit DragCatcher(QObject *parent = nullptr);

    // The handler is never kept alive by the catcher; `guard` is the object whose
    // lifetime the handler shares.
    void setHandler(DragDestinationHandling *handler, QObject *guard);

    double pillCornerRadius() const { return m_pillCornerRadius; }
    void setPillCornerRadius(double radius) { m_pillCornerRadius = radius; }

    // Whether a point of a surface of `bounds` lies inside its rounded shape.
    bool contains(const QSizeF &bounds, const QPointF &point) const;

    // The dragging callbacks: true means copy, false none.
    bool draggingEntered(const QMimeData &data);
    bool draggingUpdated(const QMimeData &data) const;
    void draggingExited();
    bool prepareForDragOperation(const QMimeData &data) const;
    bool performDragOperation(const QMimeData &data);

    // Catches the drag events of the window it is installed on and turns them into the
    // callbacks above: entering and leaving the rounded shape are what count as the
    // drag entering and leaving, wherever it crosses the window's own edge.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Hands a payload read at the drop to the handler; false when there is none.
    bool deliverDrop(std::optional<DropPayload> payload);
    DragDestinationHandling *handler() const { return m_guard ? m_handler : nullptr; }

    DragDestinationHandling *m_handler = nullptr;
    QPointer<QObject> m_guard;
    double m_pillCornerRadius = 14;
    // The drag now over the window: whether it offers a type a surface takes, and
    // whether it is inside the rounded shape.
    bool m_dragLetIn = false;
    bool m_dragInside = false;
    // Where the drag was last answered with copy, in the window's coordinates as they
    // were then; none once it was refused.
    std::optional<QPointF> m_acceptedAt;
    // What the drag carried when it last entered the shape (an image not yet decoded).
    std::optional<DropPayload> m_enteredPayload;
};

} // namespace ledgewise
