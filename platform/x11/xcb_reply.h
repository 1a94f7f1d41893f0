// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <memory>

namespace ledgewise {

// xcb hands every reply, error and event it returns over to the caller, who must give
// it back with free(); owning them this way frees each one on every path out.
struct XcbFree {
    void operator()(void *pointer) const { std::free(pointer); }
};

template <typename T> using XcbReply = std::unique_ptr<T, XcbFree>;

} // namespace ledgewise
