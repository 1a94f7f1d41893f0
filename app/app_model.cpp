#include "app/app_model.h"

#include "app/preferences_store.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/downloads/downloads_store.h"
#include "modules/module_registry.h"
#include "modules/timer/timer_session.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "platform/dbus/freedesktop_notifications.h"
#include "platform/settings/qsettings_store.h"
#include "platform/x11/system_bell.h"
#include "shortcuts/application_shortcuts.h"
#include "shortcuts/shortcut_store.h"

namespace ledgewise {

AppModel::AppModel()
    : AppModel(std::make_unique<QSettingsStore>())
{
}

AppModel::AppModel(std::unique_ptr<KeyValueStore> settings)
    : m_settings(std::move(settings))
    , m_prefs(std::make_unique<PreferencesStore>(*m_settings))
    , m_pasteboard(std::make_unique<QtPasteboard>())
    , m_clipboard(std::make_unique<ClipboardStore>(*m_pasteboard, std::nullopt, 50, true))
    , m_notifications(std::make_unique<FreedesktopNotifications>())
    , m_bell(std::make_unique<X11Bell>())
    , m_timer(std::make_unique<TimerSession>(m_notifications.get(), m_bell.get()))
    , m_downloads(DownloadsStore::createWatching())
    , m_modules(std::make_unique<ModuleRegistry>(makePlaceholderModules()))
    , m_shortcuts(std::make_unique<GlobalShortcuts::Store>(*m_settings))
{
}

AppModel::~AppModel()
{
    saveAll();
}

void AppModel::start()
{
    if (m_started)
        return;
    m_started = true;
    registerShortcuts();
}

void AppModel::registerShortcuts()
{
    // Creates the two toggle shortcuts with their defaults on a first start; the hot
    // keys themselves are grabbed once the surfaces they toggle exist.
    ApplicationShortcuts::declareAll(*m_shortcuts);
}

void AppModel::reopen()
{
}

void AppModel::saveAll()
{
    m_settings->sync();
}

} // namespace ledgewise
