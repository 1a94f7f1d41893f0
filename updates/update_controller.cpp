// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/update_controller.h"

#include "platform/settings/key_value_store.h"
#include "platform/xdg/url_opener.h"
#include "updates/update_schedule.h"

namespace ledgewise {

namespace {

QString seconds(std::chrono::milliseconds duration)
{
    return QString::number(double(duration.count()) / 1000.0, 'g', 3);
}

} // namespace

QUrl UpdateController::configuredFeed()
{
    if (qEnvironmentVariableIsSet("LEDGEWISE_UPDATE_FEED"))
        return QUrl(qEnvironmentVariable("LEDGEWISE_UPDATE_FEED"));
    return QUrl(QStringLiteral(LEDGEWISE_UPDATE_FEED_URL));
}

UpdateController::Options UpdateController::standardOptions()
{
    Options options;
    options.feed = configuredFeed();
    options.currentVersion = QStringLiteral(LEDGEWISE_VERSION);
    return options;
}

UpdateController::UpdateController(KeyValueStore &settings, UrlOpener &opener, Options options, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_opener(opener)
    , m_options(std::move(options))
    , m_fetcher(m_options.limits)
{
    m_schedule.setSingleShot(true);
    // Coarse timers may fire early, and the first minute is to stay quiet; one
    // precise wake-up a day costs nothing.
    m_schedule.setTimerType(Qt::PreciseTimer);
    connect(&m_schedule, &QTimer::timeout, this, [this] { check(false); });
    connect(&m_fetcher, &FeedFetcher::finished, this, &UpdateController::fetched);
}

UpdateController::~UpdateController() = default;

void UpdateController::startAutomaticChecks()
{
    if (m_options.feed.isEmpty())
        return;
    m_startedAt = QDateTime::currentDateTimeUtc();
    scheduleNext();
}

void UpdateController::checkForUpdates()
{
    check(true);
    emit presentRequested(true);
}

void UpdateController::check(bool byUser)
{
    m_byUser = m_byUser || byUser;
    if (m_fetcher.isBusy())
        return;
    m_newest = {};
    m_failure.clear();
    m_state = State::checking;
    emit changed();
    if (m_options.feed.isEmpty()) {
        finish(State::failed, tr("This build of Ledgewise has no update feed."));
        return;
    }
    // Counted from the start of a check, so a feed that keeps failing is still asked
    // only once a day.
    m_settings.setValue(QString::fromLatin1(lastCheckKey), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    m_schedule.stop();
    m_fetcher.fetch(m_options.feed, "Ledgewise/" + m_options.currentVersion.toUtf8());
}

void UpdateController::fetched(const FeedFetcher::Result &result)
{
    switch (result.failure) {
    case FeedFetcher::Failure::none:
        break;
    case FeedFetcher::Failure::unreachable:
        finish(State::failed, tr("The update feed could not be reached: %1.").arg(result.detail));
        return;
    case FeedFetcher::Failure::httpStatus: {
        // The server's reason phrase is its own text: a short one is kept.
        QString answer = QString::number(result.httpStatus);
        if (const QString reason = result.detail.simplified(); !reason.isEmpty() && reason.size() <= 60)
            answer += QLatin1Char(' ') + reason;
        finish(State::failed, tr("The update feed could not be fetched: the server answered %1.").arg(answer));
        return;
    }
    case FeedFetcher::Failure::redirectLoop:
        finish(State::failed, tr("The update feed could not be fetched: its address redirects in a loop."));
        return;
    case FeedFetcher::Failure::tooLarge:
        finish(State::failed, tr("The update feed is larger than 1 MB, so it was not read."));
        return;
    case FeedFetcher::Failure::timedOut:
        finish(State::failed,
            tr("The update feed did not answer within %1 seconds.").arg(seconds(m_fetcher.limits().deadline)));
        return;
    }
    const std::optional<QList<AppcastItem>> items = Appcast::parse(result.body);
    if (!items) {
        finish(State::failed, tr("The update feed could not be read: it is not a valid appcast."));
        return;
    }
    const std::optional<AppcastItem> newest = Appcast::newest(*items);
    if (!newest) {
        finish(State::failed, tr("The update feed lists no version of Ledgewise."));
        return;
    }
    m_newest = *newest;
    finish(
        Appcast::compareVersions(m_newest.version, m_options.currentVersion) > 0 ? State::available : State::upToDate);
}

void UpdateController::finish(State state, QString failure)
{
    const bool present = !m_byUser && state == State::available;
    m_byUser = false;
    m_state = state;
    m_failure = std::move(failure);
    emit changed();
    scheduleNext();
    if (present)
        emit presentRequested(false);
}

void UpdateController::scheduleNext()
{
    if (m_options.feed.isEmpty() || !m_startedAt.isValid())
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime due = UpdateSchedule::nextCheck(m_startedAt, lastCheck(), now, m_options.quietAfterStart);
    m_schedule.start(UpdateSchedule::delayUntil(due, now));
}

std::optional<QDateTime> UpdateController::lastCheck() const
{
    const QDateTime stored
        = QDateTime::fromString(m_settings.value(QString::fromLatin1(lastCheckKey)).toString(), Qt::ISODate);
    if (!stored.isValid())
        return std::nullopt;
    return stored;
}

QString UpdateController::heading() const
{
    switch (m_state) {
    case State::idle:
    case State::checking:
        return tr("Checking for updates…");
    case State::available:
        return tr("Ledgewise %1 is available").arg(m_newest.displayVersion);
    case State::upToDate:
        return tr("Ledgewise is up to date");
    case State::failed:
        return tr("Ledgewise could not check for updates");
    }
    return {};
}

QString UpdateController::detail() const
{
    switch (m_state) {
    case State::idle:
    case State::checking:
        return {};
    case State::available:
    case State::upToDate:
        return tr("You have Ledgewise %1.").arg(m_options.currentVersion);
    case State::failed:
        return m_failure;
    }
    return {};
}

void UpdateController::openDownloadPage()
{
    if (hasDownloadPage())
        m_opener.open(m_newest.downloadPage);
}

void UpdateController::openReleaseNotes()
{
    if (hasReleaseNotes())
        m_opener.open(m_newest.releaseNotes);
}

} // namespace ledgewise
