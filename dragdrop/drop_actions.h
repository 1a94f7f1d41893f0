#pragma once

#include "dragdrop/drop_action.h"
#include "dragdrop/drop_payload.h"

namespace ledgewise {

class Pasteboard;
class UrlOpener;

// Carries out the drop actions. None reports anything: what cannot be done for one item
// is skipped, and nothing that exists is ever overwritten.
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
// under a free name.
void save(const DropPayload &payload, const QString &downloadsFolder);
// Opens the files, or the links, or text that is an address with a scheme.
void open(const DropPayload &payload, UrlOpener &opener);

// There is no share sheet and no AirDrop on this desktop, so both end quietly.
bool shareAvailable();
bool airDropAvailable();

} // namespace DropActions
} // namespace ledgewise
