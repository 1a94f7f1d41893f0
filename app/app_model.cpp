#include "app/app_model.h"

#include "app/preferences_store.h"
#include "modules/module_registry.h"
#include "platform/settings/qsettings_store.h"
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
