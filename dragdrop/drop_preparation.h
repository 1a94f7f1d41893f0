// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_action.h"
#include "dragdrop/drop_payload.h"

#include <QString>

namespace ledgewise::DropPreparation {

// Texts up to this many bytes go into a mail's body as they are; longer ones are
// attached as a file: the body travels on the mail program's command line, which takes
// no argument over 128 KiB. Past this size, too, converting a whole text is work for a
// worker, not the main thread.
inline constexpr qsizetype longestMailBody = 64 * 1024;

// Whether `action` on `payload` has work to do first that must not hold the main
// thread: all of a long text to convert, or to write to a file for a mail.
bool isSlow(DropAction action, const DropPayload &payload);

// Does that work, on any thread, `payload` being this call's own copy. For Share of a
// long text the text is written to a new "Dropped text.txt" in `shareFolder` and the
// payload becomes that file; nothing (an empty payload) when it cannot be written. For
// Send to Device the text is converted.
DropPayload prepare(DropAction action, DropPayload payload, const QString &shareFolder);

} // namespace ledgewise::DropPreparation
