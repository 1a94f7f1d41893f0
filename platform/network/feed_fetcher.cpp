// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/network/feed_fetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace ledgewise {

FeedFetcher::FeedFetcher(Limits limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { stop({ Failure::timedOut, {}, 0, {} }); });
}

FeedFetcher::~FeedFetcher()
{
    cancel();
}

void FeedFetcher::fetch(const QUrl &url, const QByteArray &userAgent)
{
    cancel();
    if (!m_manager)
        m_manager = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest request(url);
    // Set, so Qt does not fill them in: its defaults name the user's language (and
    // a browser's User-Agent); identity keeps the size cap on what the server sends.
    request.setRawHeader("User-Agent", userAgent);
    request.setRawHeader("Accept-Language", "*");
    request.setRawHeader("Accept-Encoding", "identity");
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    // A fresh manager has no cache; nothing is kept should one ever be set.
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(m_limits.maximumRedirects);

    m_body.clear();
    m_reply = m_manager->get(request);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &FeedFetcher::checkAnnouncedSize);
    connect(m_reply, &QNetworkReply::readyRead, this, &FeedFetcher::readAvailable);
    connect(m_reply, &QNetworkReply::finished, this, &FeedFetcher::replyFinished);
    // One deadline for the whole fetch: a server that trickles a byte at a time does
    // not keep it going.
    m_deadline.start(m_limits.deadline);
}

void FeedFetcher::cancel()
{
    m_deadline.stop();
    if (m_reply) {
        QNetworkReply *reply = m_reply;
        m_reply = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    m_body.clear();
}

void FeedFetcher::checkAnnouncedSize()
{
    if (!m_reply)
        return;
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid() && length.toLongLong() > m_limits.maximumBytes)
        stop({ Failure::tooLarge, {}, 0, {} });
}

void FeedFetcher::readAvailable()
{
    if (!m_reply)
        return;
    m_body += m_reply->read(m_limits.maximumBytes + 1 - m_body.size());
    if (m_body.size() > m_limits.maximumBytes)
        stop({ Failure::tooLarge, {}, 0, {} });
}

void FeedFetcher::replyFinished()
{
    if (!m_reply)
        return;
    readAvailable();
    if (!m_reply)
        return; // too large
    const int status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QNetworkReply::NetworkError error = m_reply->error();
    Result result;
    result.httpStatus = status;
    if (error == QNetworkReply::TooManyRedirectsError) {
        result.failure = Failure::redirectLoop;
    } else if (status >= 400) {
        result.failure = Failure::httpStatus;
        result.detail = m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString();
    } else if (error != QNetworkReply::NoError) {
        result.failure = Failure::unreachable;
        result.detail = m_reply->errorString();
    } else {
        result.body = m_body;
    }
    stop(std::move(result));
}

void FeedFetcher::stop(Result result)
{
    cancel();
    release();
    emit finished(result);
}

void FeedFetcher::release()
{
    cancel();
    // The manager may be inside one of its own signals here: let it finish first.
    if (m_manager)
        m_manager.release()->deleteLater();
}

} // namespace ledgewise
