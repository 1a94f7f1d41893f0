// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/network/feed_fetcher.h"
#include "updates/appcast.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace ledgewise {

class KeyValueStore;
class UrlOpener;

// Software updates: checks the appcast feed fixed at build time, by itself at most once
// a day (never in the first minute after start) and at once when the user asks. What
// it found is its state, which the update window shows; an automatic check only asks
// for the window when a newer Ledgewise is out. It downloads and installs nothing: the
// user gets the download page in the browser.
class UpdateController : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed)
    Q_PROPERTY(QString heading READ heading NOTIFY changed)
    Q_PROPERTY(QString detail READ detail NOTIFY changed)
    Q_PROPERTY(bool hasReleaseNotes READ hasReleaseNotes NOTIFY changed)
    Q_PROPERTY(bool hasDownloadPage READ hasDownloadPage NOTIFY changed)

public:
    enum class State { idle, checking, available, upToDate, failed };
    Q_ENUM(State)

    struct Options {
        QUrl feed; // empty: this build checks nothing
        QString currentVersion; // ours
        FeedFetcher::Limits limits;
        std::chrono::milliseconds quietAfterStart = std::chrono::minutes(1);
    };

    // Where the time of the last check is kept, so "once a day" holds across restarts.
    static constexpr auto lastCheckKey = "ledgewise.lastUpdateCheck";

    // The feed of this build, or LEDGEWISE_UPDATE_FEED when set (even empty).
    static QUrl configuredFeed();
    // This build's feed and version, with the standard limits.
    static Options standardOptions();

    UpdateController(KeyValueStore &settings, UrlOpener &opener, Options options, QObject *parent = nullptr);
    ~UpdateController() override;

    // Schedules the automatic checks; the first falls due a minute after this call at
    // the earliest.
    void startAutomaticChecks();
    // Checks now and asks for the window, which shows the check going on.
    void checkForUpdates();

    State state() const { return m_state; }
    QString heading() const;
    QString detail() const;
    bool hasReleaseNotes() const { return m_state == State::available && !m_newest.releaseNotes.isEmpty(); }
    bool hasDownloadPage() const { return m_state == State::available && !m_newest.downloadPage.isEmpty(); }
    const AppcastItem &newest() const { return m_newest; }
    bool isCheckScheduled() const { return m_schedule.isActive(); }

    Q_INVOKABLE void openDownloadPage();
    Q_INVOKABLE void openReleaseNotes();

signals:
    void changed();
    // The update window should show: in front and with the keyboard when the user
    // asked, without taking the keyboard from what they are doing when a check of its
    // own found a newer version.
    void presentRequested(bool byUser);

private:
    void check(bool byUser);
    void fetched(const FeedFetcher::Result &result);
    void scheduleNext();
    void finish(State state, QString failure = {});
    std::optional<QDateTime> lastCheck() const;

    KeyValueStore &m_settings;
    UrlOpener &m_opener;
    Options m_options;
    FeedFetcher m_fetcher;
    QTimer m_schedule;
    QDateTime m_startedAt;
    State m_state = State::idle;
    AppcastItem m_newest;
    QString m_failure;
    // Whether the user asked for the check under way (then every result is shown).
    bool m_byUser = false;
};

} // namespace ledgewise
