#pragma once

#include <QObject>

#include <memory>

namespace ledgewise {

class KeyValueStore;
class PreferencesStore;
class ModuleRegistry;
class Pasteboard;
class ClipboardStore;
class TimerSession;
class DownloadsStore;
class FreedesktopNotifications;
class SystemBell;
namespace GlobalShortcuts {
class Store;
}

// The application's shared state: it owns the settings, the preferences, the three
// data stores, the module catalogue and the shortcuts for the life of the process, and
// runs the start-up sequence.
class AppModel : public QObject
{
    Q_OBJECT

public:
    // Over the user's settings file; tests pass their own store.
    AppModel();
    explicit AppModel(std::unique_ptr<KeyValueStore> settings);
    ~AppModel() override;

    PreferencesStore &prefs() const { return *m_prefs; }
    ClipboardStore &clipboard() const { return *m_clipboard; }
    TimerSession &timer() const { return *m_timer; }
    DownloadsStore &downloads() const { return *m_downloads; }
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
    std::unique_ptr<Pasteboard> m_pasteboard;
    std::unique_ptr<ClipboardStore> m_clipboard;
    std::unique_ptr<FreedesktopNotifications> m_notifications;
    std::unique_ptr<SystemBell> m_bell;
    std::unique_ptr<TimerSession> m_timer;
    std::unique_ptr<DownloadsStore> m_downloads;
    std::unique_ptr<ModuleRegistry> m_modules;
    std::unique_ptr<GlobalShortcuts::Store> m_shortcuts;
    bool m_started = false;
};

} // namespace ledgewise
