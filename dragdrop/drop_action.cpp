// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_action.h"

namespace ledgewise {

namespace {

struct ActionCase {
    DropAction action;
    const char *raw;
    const char *title;
    const char *symbol;
};

// The last one sends to a phone paired with this computer; its stored value keeps the
// name it has always had, so nothing stored or scripted against it changes.
constexpr ActionCase actionCases[] = {
    { DropAction::copy, "copy", "Copy", "doc.on.doc" },
    { DropAction::save, "save", "Save", "arrow.down.to.line" },
    { DropAction::share, "share", "Share", "square.and.arrow.up" },
    { DropAction::open, "open", "Open", "arrow.up.forward" },
    { DropAction::airDrop, "airDrop", "Send to Device", "dot.radiowaves.left.and.right" },
};

const ActionCase &caseOf(DropAction action)
{
    for (const ActionCase &c : actionCases) {
        if (c.action == action)
            return c;
    }
    return actionCases[0];
}

} // namespace

QString rawValue(DropAction action)
{
    return QString::fromLatin1(caseOf(action).raw);
}
QString title(DropAction action)
{
    return QString::fromLatin1(caseOf(action).title);
}
QString systemImage(DropAction action)
{
    return QString::fromLatin1(caseOf(action).symbol);
}

std::optional<DropAction> dropActionFromRaw(const QString &raw)
{
    for (const ActionCase &c : actionCases) {
        if (raw == QLatin1String(c.raw))
            return c.action;
    }
    return std::nullopt;
}

} // namespace ledgewise
