// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace ledgewise {

// The stored form of the preferences: one compact JSON object with exactly the
// eighteen members in field order. Fails only when a number cannot be written as JSON
// (NaN or infinity), in which case nothing must be stored.
std::optional<QByteArray> encodePreferences(const Preferences &preferences);

// All or nothing: every member is required with its JSON type, enumeration texts must
// match exactly, and one bad launcher item fails the whole record. Numbers are taken
// as they stand (no clamping); members with other keys are ignored.
std::optional<Preferences> decodePreferences(QByteArrayView json);

} // namespace ledgewise
