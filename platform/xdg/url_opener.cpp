// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/url_opener.h"

#include <QDesktopServices>

namespace ledgewise {

bool DesktopUrlOpener::open(const QUrl &url)
{
    return url.isValid() && QDesktopServices::openUrl(url);
}

} // namespace ledgewise
