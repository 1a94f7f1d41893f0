// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// A new mail for the user to finish: files to attach (absolute paths), or a body.
struct MailDraft {
    QStringList attachments;
    QString body;

    bool isEmpty() const { return attachments.isEmpty() && body.isEmpty(); }
    bool operator==(const MailDraft &) const = default;
};

// Opens the user's mail composer with a draft.
class MailComposer
{
public:
    virtual ~MailComposer() = default;
    // False when no composer could be asked; callers stay quiet about it.
    virtual bool compose(const MailDraft &draft) = 0;
};

// The real one: xdg-email, which finds the user's mail client whatever the desktop.
class XdgMailComposer final : public MailComposer
{
public:
    bool compose(const MailDraft &draft) override;

    // xdg-email's arguments for a draft: every file as `--attach PATH`, then the body as
    // `--body TEXT`. Each value is an argument of its own, so nothing in a name or a
    // text is ever read as an option or by a shell.
    static QStringList arguments(const MailDraft &draft);
};

} // namespace ledgewise
