// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <memory>

class QNetworkAccessManager;
class QNetworkReply;

namespace ledgewise {

// Fetches one small document (the update feed) with a GET that carries nothing about
// the user: no cookies, no cache, no language, a User-Agent naming only the program.
// A document over the size cap, a server that does not finish before the deadline and
// an address that redirects too often end the fetch with a failure of their own.
// The network machinery exists only while a fetch runs, so an idle Ledgewise holds none.
class FeedFetcher : public QObject
{
    Q_OBJECT

public:
    struct Limits {
        qint64 maximumBytes = 1024 * 1024;
        std::chrono::milliseconds deadline { 15000 };
        int maximumRedirects = 5;
    };

    enum class Failure { none, unreachable, httpStatus, redirectLoop, tooLarge, timedOut };

    struct Result {
        Failure failure = Failure::none;
        QByteArray body;
        int httpStatus = 0;
        QString detail; // the network's own words, for unreachable and httpStatus
    };

    explicit FeedFetcher(Limits limits, QObject *parent = nullptr);
    ~FeedFetcher() override;

    // Starts fetching `url`, cancelling a fetch still running. `finished` follows once.
    void fetch(const QUrl &url, const QByteArray &userAgent);
    void cancel();
    bool isBusy() const { return !m_reply.isNull(); }
    const Limits &limits() const { return m_limits; }

signals:
    void finished(const ledgewise::FeedFetcher::Result &result);

private:
    void readAvailable();
    void checkAnnouncedSize();
    void replyFinished();
    void stop(Result result);
    void release();

    Limits m_limits;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_body;
    QTimer m_deadline;
};

} // namespace ledgewise
