// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "dragdrop/drop_payload.h"

#include <QString>

#include <atomic>
#include <functional>

namespace ledgewise {

// How a save ended.
enum class SaveOutcome {
    saved, // everything that could be read was saved
    nothing, // there was nothing to save, or no folder to save into
    cancelled, // stopped on request; what was finished before stays, nothing partial does
    failed, // at least one item could not be written (disk full, file too large...)
};

// Saves a drop into a folder the way Save does, on whichever thread calls `run`:
// dropped files are copied (never moved), folders whole, an image becomes Dropped.png,
// text Dropped.txt, links Dropped.url.
//
// Every item is first written under a hidden temporary name in the target folder
// (".ledgewise-save-" and six random characters) and takes its free final name only
// when it is complete, by a rename that never replaces anything. So a cancel, a write
// error or a crash never leaves a partial file or tree under a real name, and a
// cancel or an error removes the temporary at once.
class DropSaver
{
public:
    // Bytes written so far and bytes to write in all (the total is known before the
    // first byte is written).
    using Progress = std::function<void(qint64 done, qint64 total)>;

    DropSaver(DropPayload payload, QString folder);

    // Runs the whole save. `cancelled` is looked at between chunks of 1 MiB; `progress`
    // is called after every chunk.
    SaveOutcome run(const std::atomic<bool> &cancelled, const Progress &progress = {});

    // The prefix of every temporary a save makes.
    static QString temporaryPrefix();
    // Removes what saves interrupted by a crash left in `folder`: every entry whose
    // name starts with the prefix. Only while no save runs there.
    static void removeLeftovers(const QString &folder);

private:
    DropPayload m_payload;
    QString m_folder;
};

} // namespace ledgewise
