// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "surfaces/surface_context.h"

#include <QObject>

#include <memory>

class QQmlEngine;

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
class NotchController;
class MotionPreference;
class SurfaceMenu;
class UrlOpener;
class DropSaves;
class FileChooser;
class ProgramLauncher;
class MailComposer;
class KdeConnectDevices;
class UpdateController;
class UpdateWindow;
namespace LaunchAtLogin {
class Follower;
}
class XkbKeyboardLayout;
class X11HotKeyGrabber;
class SettingsFileWatcher;
namespace GlobalShortcuts {
class Store;
class HotKeyCenter;
} // namespace GlobalShortcuts

// The application's shared state: it owns the settings, the preferences, the three
// data stores, the module catalogue and the shortcuts for the life of the process, and
// runs the start-up sequence.
class AppModel : public SurfaceContext
{
    Q_OBJECT

public:
    // How the desktop opens files and addresses, chooses files and starts programs.
    struct Desktop {
        std::unique_ptr<UrlOpener> opener;
        std::unique_ptr<FileChooser> chooser;
        std::unique_ptr<ProgramLauncher> launcher;
        ~Desktop();
    };

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
    // The desktop-wide hot keys; present once started.
    GlobalShortcuts::HotKeyCenter *hotKeys() const { return m_hotKeys.get(); }
    // Present once started.
    NotchController *notchController() const { return m_notchController.get(); }
    UpdateController &updates() const { return *m_updates; }
    // Present once started.
    UpdateWindow *updateWindow() const { return m_updateWindow.get(); }

    // SurfaceContext
    PreferencesStore &preferencesStore() override { return *m_prefs; }
    QList<LedgewiseModule *> modulesOf(NotchSide side) override;
    QList<LedgewiseModule *> allModules() override;
    bool reduceMotion() override;
    bool ownDialogOpen() override;
    void performDropAction(DropAction action, const DropPayload &payload) override;
    DropSaves *dropSaves() override { return m_dropSaves.get(); }
    QObject *deviceSender() override;
    void openSettings() override;
    void checkForUpdates() override;
    void quit() override;

    // The surfaces' menu: "Settings…", "Check for Updates…", "Quit Ledgewise"; made
    // the first time it is asked for.
    SurfaceMenu &contextMenu();

    // Registers the global shortcuts and brings up the surfaces. Called once.
    void start();

public slots:
    // Opens or closes the surface nearest the pointer on `side` (the toggle shortcuts,
    // `ledgewise --toggle`); nothing before the surfaces exist.
    void toggleSurface(NotchSide side);
    // The user started Ledgewise again while it runs: the settings open unless one of
    // Ledgewise's windows is already showing.
    void reopen();
    // Flushes every store to disk; called on the way out.
    void saveAll();

signals:
    // The open-settings command ran (a second start, --settings, the menu).
    void settingsRequested();

private:
    void registerShortcuts();
    // A drop action whose slow part, if any, is done.
    void performPrepared(DropAction action, const DropPayload &payload);
    void showContextMenu(QPoint globalPosition);

    std::unique_ptr<KeyValueStore> m_settings;
    std::unique_ptr<PreferencesStore> m_prefs;
    std::unique_ptr<Pasteboard> m_pasteboard;
    std::unique_ptr<ClipboardStore> m_clipboard;
    std::unique_ptr<FreedesktopNotifications> m_notifications;
    std::unique_ptr<SystemBell> m_bell;
    std::unique_ptr<TimerSession> m_timer;
    std::unique_ptr<DownloadsStore> m_downloads;
    Desktop m_desktop;
    std::unique_ptr<ModuleRegistry> m_modules;
    std::unique_ptr<GlobalShortcuts::Store> m_shortcuts;
    // The hot keys read the store and are gone before it.
    std::unique_ptr<XkbKeyboardLayout> m_keyboardLayout;
    std::unique_ptr<X11HotKeyGrabber> m_hotKeyGrabber;
    std::unique_ptr<GlobalShortcuts::HotKeyCenter> m_hotKeys;
    std::unique_ptr<SettingsFileWatcher> m_settingsWatcher;
    // Saves of drops into the Downloads folder, on a worker; outlives the surfaces.
    std::unique_ptr<DropSaves> m_dropSaves;
    // Share's mail composer and the phones Send to Device reaches.
    std::unique_ptr<MailComposer> m_mail;
    std::unique_ptr<KdeConnectDevices> m_devices;
    std::unique_ptr<QQmlEngine> m_engine;
    std::unique_ptr<NotchController> m_notchController;
    std::unique_ptr<MotionPreference> m_motion;
    std::unique_ptr<SurfaceMenu> m_contextMenu;
    bool m_started = false;
    // Applies the launch-at-login preference to the desktop's autostart entry.
    std::unique_ptr<LaunchAtLogin::Follower> m_launchAtLogin;
    std::unique_ptr<UpdateController> m_updates;
    // Goes before the controller and the engine it binds to.
    std::unique_ptr<UpdateWindow> m_updateWindow;
};

} // namespace ledgewise
