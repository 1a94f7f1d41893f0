// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Gives the fake's signals a home (the header is header-only otherwise).
#include "tests/support/fake_pasteboard.h"
