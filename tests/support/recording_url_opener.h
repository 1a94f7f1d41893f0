// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/xdg/url_opener.h"

#include <QList>

namespace ledgewise {

// Remembers what it was asked to open instead of starting applications.
class RecordingUrlOpener final : public UrlOpener
{
public:
    bool open(const QUrl &url) override
    {
        opened.append(url);
        return true;
    }
    QList<QUrl> opened;
};

} // namespace ledgewise
