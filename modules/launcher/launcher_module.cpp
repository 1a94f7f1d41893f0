// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/launcher/launcher_module.h"

#include "modules/launcher/launcher_actions.h"

namespace ledgewise {

namespace {

// Long enough to read the line, short enough not to linger over the next visit.
constexpr int noticeSeconds = 6;

} // namespace

LauncherModule::LauncherModule(
    PreferencesStore &store, FileChooser &chooser, UrlOpener &opener, ProgramLauncher &launcher, QObject *parent)
    : LedgewiseModule(ModuleID::launcher, parent)
    , m_store(store)
    , m_chooser(chooser)
    , m_opener(opener)
    , m_launcher(launcher)
{
    connect(&m_store, &PreferencesStore::currentChanged, this, &LauncherModule::rowsChanged);
    m_noticeExpiry.setSingleShot(true);
    m_noticeExpiry.setInterval(noticeSeconds * 1000);
    connect(&m_noticeExpiry, &QTimer::timeout, this, [this] { setNotice({}); });
}

void LauncherModule::setNotice(const QString &notice)
{
    if (notice.isEmpty())
        m_noticeExpiry.stop();
    else
        m_noticeExpiry.start();
    if (notice == m_notice)
        return;
    m_notice = notice;
    emit noticeChanged();
}

QVariantList LauncherModule::rows() const
{
    QVariantList rows;
    for (const LauncherItem &item : m_store.current().launcherItems) {
        rows.append(QVariantMap { { QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces) },
            { QStringLiteral("title"), item.title },
            { QStringLiteral("symbol"), LauncherActions::symbol(item.kind) } });
    }
    return rows;
}

void LauncherModule::append(const LauncherItem &item)
{
    m_store.update([&item](Preferences &preferences) { preferences.launcherItems.append(item); });
}

bool LauncherModule::addWebsite(const QString &draft)
{
    const auto item = LauncherActions::websiteItem(draft);
    if (!item)
        return false;
    append(*item);
    return true;
}

void LauncherModule::addApplication()
{
    pickAndAppend(LauncherItem::Kind::application);
}

void LauncherModule::addFile()
{
    pickAndAppend(LauncherItem::Kind::file);
}

void LauncherModule::pickAndAppend(LauncherItem::Kind kind)
{
    // The module is the answer's context: a module gone before the answer is never touched.
    LauncherActions::pick(kind, m_chooser, this, [this](std::optional<LauncherItem> item) {
        if (item)
            append(*item);
    });
}

void LauncherModule::remove(const QString &id)
{
    const QUuid uuid = QUuid::fromString(id);
    m_store.update([&uuid](Preferences &preferences) {
        preferences.launcherItems.removeIf([&uuid](const LauncherItem &item) { return item.id == uuid; });
    });
}

void LauncherModule::open(const QString &id)
{
    const QUuid uuid = QUuid::fromString(id);
    for (const LauncherItem &item : m_store.current().launcherItems) {
        if (item.id == uuid) {
            const auto result = LauncherActions::open(item, m_opener, m_launcher);
            setNotice(result == LauncherActions::OpenResult::changed
                    ? QStringLiteral("“%1” has changed since it was pinned.").arg(item.title)
                    : QString());
            return;
        }
    }
}

QUrl LauncherModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("LauncherExpandedView.qml"));
}

QVariantMap LauncherModule::expandedViewProperties() const
{
    return { { QStringLiteral("module"), QVariant::fromValue(const_cast<LauncherModule *>(this)) } };
}

} // namespace ledgewise
