#pragma once

#include "dragdrop/drop_action.h"
#include "dragdrop/drop_payload.h"
#include "dragdrop/drop_saver.h"

namespace ledgewise {

class Pasteboard;
class UrlOpener;

// Carries out the drop actions. What cannot be done for one item is skipped, and nothing
// that exists is ever overwritten. Only Open says when it refuses something.
namespace DropActions {

// What the actions act on: the clipboard, the desktop's opener and the folder saves go
// into (which is never created).
struct Context {
    Pasteboard &pasteboard;
    UrlOpener &opener;
    QString downloadsFolder;
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

// There is no share sheet and no AirDrop on this desktop, so both end quietly.
bool shareAvailable();
bool airDropAvailable();

} // namespace DropActions
} // namespace ledgewise
