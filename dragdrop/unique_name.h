// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace ledgewise {

// The first free name for `name` where `taken` says which names exist: the name itself,
// then base-1.ext, base-2.ext and so on ("archive.tar.gz" → "archive.tar-1.gz",
// "notes" → "notes-1"). The extension is what follows the last dot; a leading dot
// starts a hidden name, not an extension.
QString uniqueName(const QString &name, const std::function<bool(const QString &)> &taken);

// The same in a folder: the full path of the first free name there.
QString uniquePath(const QString &folder, const QString &name);

} // namespace ledgewise
