// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_actions.h"

#include "platform/clipboard/pasteboard.h"
#include "platform/dbus/device_sender.h"
#include "platform/xdg/mail_composer.h"
#include "platform/xdg/url_opener.h"

#include <QFileInfo>
#include <QMimeData>

#include <algorithm>

namespace ledgewise::DropActions {

namespace {

// Longer texts are never taken for a link: deciding would mean converting all of a
// text of many megabytes on the main thread.
constexpr qsizetype longestLinkBytes = 64 * 1024;

// What Open would hand to the desktop.
QList<QUrl> openTargets(const DropPayload &payload)
{
    if (!payload.fileURLs.isEmpty())
        return payload.fileURLs;
    if (!payload.urls.isEmpty())
        return payload.urls;
    if (payload.text && payload.text.utf8Size() <= longestLinkBytes) {
        const QUrl url(*payload.text, QUrl::StrictMode);
        if (url.isValid() && !url.scheme().isEmpty())
            return { url };
    }
    return {};
}

} // namespace

void perform(DropAction action, const DropPayload &payload, Context &context)
{
    switch (action) {
    case DropAction::copy:
        copy(payload, context.pasteboard);
        return;
    case DropAction::save:
        save(payload, context.downloadsFolder);
        return;
    case DropAction::open:
        open(payload, context.opener);
        return;
    case DropAction::share:
        if (context.mail)
            share(payload, *context.mail);
        return;
    case DropAction::airDrop:
        if (context.devices)
            sendToDevice(payload, *context.devices);
        return;
    }
}

void copy(const DropPayload &payload, Pasteboard &pasteboard)
{
    pasteboard.clearContents();
    auto data = std::make_unique<QMimeData>();
    if (!payload.fileURLs.isEmpty()) {
        data->setUrls(payload.fileURLs);
        // File managers paste files from their own list, which says copy, not move.
        QByteArray copied = "copy";
        for (const QUrl &url : payload.fileURLs)
            copied += '\n' + url.toEncoded();
        data->setData(QStringLiteral("x-special/gnome-copied-files"), copied);
    } else if (!payload.urls.isEmpty()) {
        data->setUrls(payload.urls);
        QStringList lines;
        for (const QUrl &url : payload.urls)
            lines << url.toString();
        data->setText(lines.join(QLatin1Char('\n')));
    } else if (payload.image) {
        data->setImageData(*payload.image);
    } else if (payload.text) {
        // Handed on in UTF-8 as it came, however long: Qt serves "text/plain" bytes to
        // other applications as they are.
        data->setData(QStringLiteral("text/plain"), payload.text.utf8());
    } else {
        return;
    }
    if (payload.secret)
        data->setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
    pasteboard.setContents(data.release());
}

SaveOutcome save(const DropPayload &payload, const QString &downloadsFolder)
{
    const std::atomic<bool> never { false };
    return DropSaver(payload, downloadsFolder).run(never);
}

bool mayOpen(const QUrl &url)
{
    if (!url.isValid())
        return false;
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        return !url.host().isEmpty();
    if (scheme == QLatin1String("mailto"))
        return true;
    return isAbsoluteLocalFile(url);
}

bool refusesToOpen(const DropPayload &payload)
{
    const QList<QUrl> targets = openTargets(payload);
    return !std::all_of(targets.begin(), targets.end(), mayOpen);
}

QString refusedToOpenText()
{
    return QStringLiteral("Can't open this kind of link.");
}

bool open(const DropPayload &payload, UrlOpener &opener)
{
    if (refusesToOpen(payload))
        return false;
    for (const QUrl &url : openTargets(payload))
        opener.open(url);
    return true;
}

MailDraft mailDraft(const DropPayload &payload)
{
    MailDraft draft;
    if (!payload.fileURLs.isEmpty()) {
        for (const QUrl &url : payload.fileURLs) {
            const QFileInfo file(url.toLocalFile());
            if (file.isFile())
                draft.attachments << file.absoluteFilePath();
        }
    } else if (!payload.urls.isEmpty()) {
        QStringList lines;
        for (const QUrl &url : payload.urls)
            lines << url.toString();
        draft.body = lines.join(QLatin1Char('\n'));
    } else if (payload.image) {
        // Nothing: a picture would first have to become a file of ours to attach.
    } else if (payload.text) {
        draft.body = *payload.text;
    }
    return draft;
}

bool share(const DropPayload &payload, MailComposer &mail)
{
    const MailDraft draft = mailDraft(payload);
    return !draft.isEmpty() && mail.compose(draft);
}

DeviceShare deviceShare(const DropPayload &payload)
{
    DeviceShare share;
    const QList<QUrl> &urls = payload.fileURLs.isEmpty() ? payload.urls : payload.fileURLs;
    if (!urls.isEmpty()) {
        for (const QUrl &url : urls)
            share.urls << url.toString(QUrl::FullyEncoded);
    } else if (payload.text && !payload.image) {
        share.text = *payload.text;
    }
    return share;
}

bool sendToDevice(const DropPayload &payload, DeviceSender &devices)
{
    const DeviceShare share = deviceShare(payload);
    return !share.isEmpty() && devices.canSend() && devices.send(share);
}

} // namespace ledgewise::DropActions
