#include "app/app_model.h"

#include "app/preferences_store.h"
#include "modules/module_registry.h"
#include "platform/settings/qsettings_store.h"

namespace ledgewise {

AppModel::AppModel()
    : AppModel(std::make_unique<QSettingsStore>())
{
}

AppModel::AppModel(std::unique_ptr<KeyValueStore> settings)
    : m_settings(std::move(settings))
    , m_prefs(std::make_unique<PreferencesStore>(*m_settings))
{
    std::vector<std::unique_ptr<LedgewiseModule>> catalog = makePlaceholderModules();
    m_modules = std::make_unique<ModuleRegistry>(std::move(catalog));
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
}

void AppModel::reopen()
{
}

void AppModel::saveAll()
{
    m_settings->sync();
}

} // namespace ledgewise
