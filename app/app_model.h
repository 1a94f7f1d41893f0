#pragma once

#include <QObject>

#include <memory>

namespace ledgewise {

class KeyValueStore;
class PreferencesStore;
class ModuleRegistry;
namespace GlobalShortcuts {
class Store;
}

// The application's shared state: it owns the settings store, the preferences, the
// module catalogue (and, as they arrive, the data stores and the surfaces) for the life
// of the process, and runs the start-up sequence.
class AppModel : public QObject
{
    Q_OBJECT

public:
    // Over the user's settings file; tests pass their own store.
    AppModel();
    explicit AppModel(std::unique_ptr<KeyValueStore> settings);
    ~AppModel() override;

    PreferencesStore &prefs() const { return *m_prefs; }
    ModuleRegistry &modules() const { return *m_modules; }
    KeyValueStore &settings() const { return *m_settings; }
    GlobalShortcuts::Store &shortcuts() const { return *m_shortcuts; }

    // Registers the global shortcuts and brings up the surfaces. Called once.
    void start();

public slots:
    // The user started Ledgewise again while it runs.
    void reopen();
    // Flushes every store to disk; called on the way out.
    void saveAll();

private:
    void registerShortcuts();

    std::unique_ptr<KeyValueStore> m_settings;
    std::unique_ptr<PreferencesStore> m_prefs;
    std::unique_ptr<ModuleRegistry> m_modules;
    std::unique_ptr<GlobalShortcuts::Store> m_shortcuts;
    bool m_started = false;
};

} // namespace ledgewise
