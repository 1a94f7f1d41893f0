// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/mail_composer.h"

#include <QProcess>
#include <QStandardPaths>

namespace ledgewise {

QStringList XdgMailComposer::arguments(const MailDraft &draft)
{
    QStringList arguments;
    // Its own conversion would turn text that is already UTF-8 into something else.
    arguments << QStringLiteral("--utf8");
    for (const QString &path : draft.attachments)
        arguments << QStringLiteral("--attach") << path;
    if (!draft.body.isEmpty())
        arguments << QStringLiteral("--body") << draft.body;
    return arguments;
}

bool XdgMailComposer::compose(const MailDraft &draft)
{
    if (draft.isEmpty())
        return false;
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-email"));
    if (program.isEmpty())
        return false;
    // Detached: the mail client outlives Ledgewise, and a missing one is xdg-email's
    // business, never a wait on the main thread.
    return QProcess::startDetached(program, arguments(draft));
}

} // namespace ledgewise
