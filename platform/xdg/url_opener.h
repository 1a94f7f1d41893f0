// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace ledgewise {

// Opens a file or an address with the desktop's default handler for it.
class UrlOpener
{
public:
    virtual ~UrlOpener() = default;
    // False when no handler could be started; callers stay quiet about it.
    virtual bool open(const QUrl &url) = 0;
};

// The real one: QDesktopServices, which asks the desktop (xdg-open or the portal).
class DesktopUrlOpener final : public UrlOpener
{
public:
    bool open(const QUrl &url) override;
};

} // namespace ledgewise
