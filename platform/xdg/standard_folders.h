#pragma once

#include <QString>

namespace ledgewise::StandardFolders {

// The user's Downloads folder (xdg-user-dirs), or ~/Downloads when none is configured.
QString downloads();

// Where Ledgewise keeps its own files: $XDG_DATA_HOME/Ledgewise, or the temporary
// folder's "Ledgewise" when no data location can be found.
QString applicationData();

} // namespace ledgewise::StandardFolders
