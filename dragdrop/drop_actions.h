// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_action.h"
#include "dragdrop/drop_payload.h"
#include "dragdrop/drop_saver.h"

namespace ledgewise {

class DeviceSender;
class MailComposer;
class Pasteboard;
class UrlOpener;
struct DeviceShare;
struct MailDraft;

// Carries out the drop actions. What cannot be done for one item is skipped, and nothing
// that exists is ever overwritten. Only Open says when it refuses something.
namespace DropActions {

// What the actions act on: the clipboard, the desktop's opener, the folder saves go
// into (which is never created), the mail composer Share opens and the paired phone
// Send to Device reaches. Share and Send to Device do nothing without theirs.
struct Context {
    Pasteboard &pasteboard;
    UrlOpener &opener;
    QString downloadsFolder;
    MailComposer *mail = nullptr;
    DeviceSender *devices = nullptr;
};

void perform(DropAction action, const DropPayload &payload, Context &context);

// Clears the clipboard, then puts the files, or the links, or the image, or the text on it.
void copy(const DropPayload &payload, Pasteboard &pasteboard);
// Copies the files (never moves them), or writes Dropped.png, Dropped.txt or Dropped.url,
// under a free name, on the calling thread (DropSaves does it on a worker).
SaveOutcome save(const DropPayload &payload, const QString &downloadsFolder);

// Whether Open hands an address to the desktop: web pages, mail and files on this
// machine. Any other scheme would reach whatever program registered for it.
bool mayOpen(const QUrl &url);
// Whether Open refuses the payload: something it would open is not allowed.
bool refusesToOpen(const DropPayload &payload);
// What the surface says when Open refuses.
QString refusedToOpenText();
// Opens the files, or the links, or text that is an address with a scheme. Opens
// nothing and answers false when one of them may not be opened.
bool open(const DropPayload &payload, UrlOpener &opener);

// The mail Share starts: the dropped files attached (only regular files: a mail
// cannot carry a folder, and the composer refuses the whole mail for one), or the
// links one a line, or the text, as its body. An image gives nothing to mail.
MailDraft mailDraft(const DropPayload &payload);
// Opens the user's mail composer with the drop; false when there was nothing to mail
// or no composer to ask.
bool share(const DropPayload &payload, MailComposer &mail);

// What Send to Device hands the phone: the files' or the links' addresses, or the text.
// An image gives nothing.
DeviceShare deviceShare(const DropPayload &payload);
// Sends the drop to the paired phone; false when there is nothing to send or no phone.
bool sendToDevice(const DropPayload &payload, DeviceSender &devices);

} // namespace DropActions
} // namespace ledgewise
