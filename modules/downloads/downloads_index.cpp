// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_index.h"

#include <algorithm>

namespace ledgewise {

namespace {

struct Ranked {
    qint64 modifiedNs;
    QByteArray name;
};

// Later first; equal times by name, so that a full selection and the step-by-step
// upkeep agree on the order.
bool ranksBefore(const Ranked &a, const Ranked &b)
{
    if (a.modifiedNs != b.modifiedNs)
        return a.modifiedNs > b.modifiedNs;
    return a.name < b.name;
}

} // namespace

DownloadsIndex DownloadsIndex::fromListing(
    QHash<QByteArray, FileFacts> files, const DownloadsIndex &previous, QList<QByteArray> *downloading)
{
    DownloadsIndex index;
    // Room to grow: a new file past the capacity would rehash every entry at once,
    // on the main thread.
    index.m_files.reserve(files.size() + files.size() / 8 + 256);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        if (!DownloadRules::isListedName(it.key()))
            continue;
        const Entry *before = previous.find(it.key());
        const auto status
            = DownloadRules::statusFor(before ? std::optional(before->facts.size) : std::nullopt, it->size);
        if (status == DownloadItem::Status::downloading && downloading)
            downloading->append(it.key());
        index.m_files.insert(it.key(), { *it, status });
    }
    index.reselect();
    return index;
}

std::optional<DownloadItem::Status> DownloadsIndex::measured(const QByteArray &name, std::optional<FileFacts> facts)
{
    const auto found = m_files.find(name);
    if (!facts || !DownloadRules::isListedName(name)) {
        if (found == m_files.end())
            return std::nullopt;
        m_files.erase(found);
        if (m_newest.removeOne(name))
            m_newestStale = true; // the next newest one is somewhere in the rest
        return std::nullopt;
    }
    const bool known = found != m_files.end();
    const qint64 previousModified = known ? found->facts.modifiedNs : facts->modifiedNs;
    const auto status = DownloadRules::statusFor(known ? std::optional(found->facts.size) : std::nullopt, facts->size);
    m_files.insert(name, { *facts, status });
    place(name, previousModified);
    return status;
}

void DownloadsIndex::settled(const QByteArray &name, qint64 size, DownloadItem::Status status)
{
    const auto found = m_files.find(name);
    if (found == m_files.end())
        return;
    found->facts.size = size;
    found->status = status;
}

const DownloadsIndex::Entry *DownloadsIndex::find(const QByteArray &name) const
{
    const auto found = m_files.constFind(name);
    return found == m_files.cend() ? nullptr : &*found;
}

QList<QByteArray> DownloadsIndex::newest()
{
    if (m_newestStale)
        reselect();
    return m_newest;
}

void DownloadsIndex::place(const QByteArray &name, qint64 previousModifiedNs)
{
    // A shown file that became older may fall behind a file that is not shown: only
    // a look at all of them tells. Otherwise the newest are among those shown and
    // this one.
    const bool shown = m_newest.contains(name);
    const qint64 modified = m_files.value(name).facts.modifiedNs;
    if (shown && modified < previousModifiedNs && m_files.size() > m_newest.size()) {
        m_newestStale = true;
        return;
    }
    if (m_newestStale)
        return;
    if (!shown)
        m_newest.append(name);
    std::sort(m_newest.begin(), m_newest.end(), [this](const QByteArray &a, const QByteArray &b) {
        return ranksBefore({ m_files.value(a).facts.modifiedNs, a }, { m_files.value(b).facts.modifiedNs, b });
    });
    if (m_newest.size() > DownloadRules::maximumItems)
        m_newest.resize(DownloadRules::maximumItems);
}

void DownloadsIndex::reselect()
{
    // The few newest of many: a bounded selection, one pass over the index.
    std::vector<Ranked> best;
    best.reserve(DownloadRules::maximumItems + 1);
    for (auto it = m_files.cbegin(); it != m_files.cend(); ++it) {
        Ranked candidate { it->facts.modifiedNs, it.key() };
        if (best.size() == size_t(DownloadRules::maximumItems) && !ranksBefore(candidate, best.back()))
            continue;
        best.insert(std::upper_bound(best.begin(), best.end(), candidate, ranksBefore), std::move(candidate));
        if (best.size() > size_t(DownloadRules::maximumItems))
            best.pop_back();
    }
    m_newest.clear();
    for (const Ranked &ranked : best)
        m_newest.append(ranked.name);
    m_newestStale = false;
}

} // namespace ledgewise
