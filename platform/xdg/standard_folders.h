// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ledgewise::StandardFolders {

// The user's Downloads folder (xdg-user-dirs), or ~/Downloads when none is configured.
QString downloads();

// Where Ledgewise keeps its own files: $XDG_DATA_HOME/Ledgewise, or the temporary
// folder's "Ledgewise" when no data location can be found.
QString applicationData();

// Where Ledgewise keeps files others read for a while and nothing is lost without:
// $XDG_CACHE_HOME/Ledgewise, or the temporary folder's "Ledgewise-cache".
QString applicationCache();

} // namespace ledgewise::StandardFolders
