// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace ledgewise {

// The system beep.
class SystemBell
{
public:
    virtual ~SystemBell() = default;
    virtual void ring() = 0;
};

// The X server's bell (silent where there is no X connection).
class X11Bell final : public SystemBell
{
public:
    void ring() override;
};

} // namespace ledgewise
