// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_model.h"

#include "app/launch_at_login.h"
#include "app/preferences_store.h"
#include "app/qml_modules.h"
#include "app/reopen_rule.h"
#include "dragdrop/drop_actions.h"
#include "dragdrop/drop_preparation.h"
#include "dragdrop/drop_saves.h"
#include "modules/clipboard/clipboard_module.h"
#include "modules/clipboard/clipboard_store.h"
#include "modules/downloads/downloads_module.h"
#include "modules/downloads/downloads_store.h"
#include "modules/launcher/launcher_module.h"
#include "modules/module_registry.h"
#include "modules/timer/timer_module.h"
#include "modules/timer/timer_session.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "platform/dbus/freedesktop_notifications.h"
#include "platform/dbus/kdeconnect_devices.h"
#include "platform/dbus/motion_preference.h"
#include "platform/settings/qsettings_store.h"
#include "platform/x11/system_bell.h"
#include "platform/xdg/autostart.h"
#include "platform/xdg/file_chooser.h"
#include "platform/xdg/mail_composer.h"
#include "platform/xdg/program_launcher.h"
#include "platform/xdg/standard_folders.h"
#include "platform/xdg/url_opener.h"
#include "surfaces/notch_controller.h"
#include "surfaces/surface_menu.h"
#include "updates/update_controller.h"
#include "updates/update_window.h"

#include "platform/settings/settings_file_watcher.h"
#include "platform/x11/x11_hot_key_grabber.h"
#include "platform/x11/xkb_keyboard_layout.h"
#include "shortcuts/application_shortcuts.h"
#include "shortcuts/hot_key_center.h"
#include "shortcuts/shortcut_store.h"
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QPointer>
#include <QQmlEngine>
#include <QThreadPool>

#include <QKeyEvent>
#include <QPointer>

namespace ledgewise {

namespace {

// One instance per module identity: the working modules over their stores, then the
// placeholders.
std::vector<std::unique_ptr<LedgewiseModule>> catalog(PreferencesStore &prefs, ClipboardStore &clipboard,
    DownloadsStore &downloads, TimerSession &timer, AppModel::Desktop &desktop)
{
    std::vector<std::unique_ptr<LedgewiseModule>> modules;
    modules.push_back(std::make_unique<ClipboardModule>(clipboard));
    modules.push_back(std::make_unique<DownloadsModule>(downloads, *desktop.opener));
    modules.push_back(std::make_unique<TimerModule>(timer));
    modules.push_back(std::make_unique<LauncherModule>(prefs, *desktop.chooser, *desktop.opener, *desktop.launcher));
    for (auto &placeholder : makePlaceholderModules())
        modules.push_back(std::move(placeholder));
    return modules;
}

} // namespace

AppModel::AppModel()
    : AppModel(std::make_unique<QSettingsStore>())
{ }

AppModel::AppModel(std::unique_ptr<KeyValueStore> settings)
    : SurfaceContext(nullptr)
    , m_settings(std::move(settings))
    , m_prefs(std::make_unique<PreferencesStore>(*m_settings))
    , m_pasteboard(std::make_unique<QtPasteboard>())
    , m_clipboard(std::make_unique<ClipboardStore>(*m_pasteboard, std::nullopt, 50, true))
    , m_notifications(std::make_unique<FreedesktopNotifications>())
    , m_bell(std::make_unique<X11Bell>())
    , m_timer(std::make_unique<TimerSession>(m_notifications.get(), m_bell.get()))
    , m_downloads(DownloadsStore::createWatching())
    , m_desktop { std::make_unique<DesktopUrlOpener>(), std::make_unique<DesktopFileChooser>(),
        std::make_unique<DetachedProgramLauncher>() }
    , m_modules(std::make_unique<ModuleRegistry>(catalog(*m_prefs, *m_clipboard, *m_downloads, *m_timer, m_desktop)))
    , m_shortcuts(std::make_unique<GlobalShortcuts::Store>(*m_settings))
    , m_dropSaves(std::make_unique<DropSaves>(&StandardFolders::downloads))
    , m_mail(std::make_unique<XdgMailComposer>())
    , m_devices(std::make_unique<KdeConnectDevices>())
{
    m_launchAtLogin = std::make_unique<LaunchAtLogin::Follower>(*m_prefs, std::make_unique<XdgAutostart>());
    // Last, with its automatic checks started at once (the first one a minute later).
    m_updates = std::make_unique<UpdateController>(*m_settings, *m_desktop.opener, UpdateController::standardOptions());
    m_updates->startAutomaticChecks();
}

AppModel::Desktop::~Desktop() = default;

AppModel::~AppModel()
{
    // The surfaces go first: they read the stores until they are closed.
    m_notchController.reset();
    saveAll();
}

void AppModel::start()
{
    if (m_started)
        return;
    m_started = true;
    registerShortcuts();
    m_motion = std::make_unique<MotionPreference>();
    m_engine = std::make_unique<QQmlEngine>();
    addLedgewiseQmlModules(*m_engine);
    m_updateWindow = std::make_unique<UpdateWindow>(*m_updates, *m_engine);
    m_notchController = std::make_unique<NotchController>(this, *m_engine);
    connect(m_notchController.get(), &NotchController::contextMenuRequested, this, &AppModel::showContextMenu);
    m_notchController->listen();
    m_notchController->rebuild(false);
}

void AppModel::registerShortcuts()
{
    // Creates the two toggle shortcuts with their defaults on a first start.
    ApplicationShortcuts::declareAll(*m_shortcuts);
    m_keyboardLayout = std::make_unique<XkbKeyboardLayout>();
    m_hotKeyGrabber = std::make_unique<X11HotKeyGrabber>();
    m_hotKeys = std::make_unique<GlobalShortcuts::HotKeyCenter>(*m_shortcuts, *m_hotKeyGrabber, *m_keyboardLayout);
    m_shortcuts->setRegistrar(m_hotKeys.get());
    // A shortcut reads as the layout in use types it.
    connect(m_hotKeyGrabber.get(), &X11HotKeyGrabber::keyboardChanged, this, [this] { m_keyboardLayout->reload(); });
    // The toggles act on release.
    const auto toggler = [this](NotchSide side) {
        return [model = QPointer<AppModel>(this), side] {
            if (model)
                model->toggleSurface(side);
        };
    };
    m_hotKeys->onKeyUp(ApplicationShortcuts::toggleLeft(), toggler(NotchSide::left));
    m_hotKeys->onKeyUp(ApplicationShortcuts::toggleRight(), toggler(NotchSide::right));
    // A shortcut changed in the settings file by hand or by another program is taken
    // at once, and the old one given back.
    if (!m_settings->fileName().isEmpty()) {
        m_settingsWatcher = std::make_unique<SettingsFileWatcher>(m_settings->fileName());
        connect(m_settingsWatcher.get(), &SettingsFileWatcher::changed, this, [this] {
            m_settings->sync();
            m_hotKeys->storedShortcutsChanged();
        });
    }
}

void AppModel::toggleSurface(NotchSide side)
{
    // A shortcut pressed or a command sent before the surfaces exist does nothing.
    if (m_notchController)
        m_notchController->toggle(side);
}

void AppModel::reopen()
{
    if (!anyOwnWindowShowing(QGuiApplication::topLevelWindows()))
        openSettings();
}

QList<LedgewiseModule *> AppModel::modulesOf(NotchSide side)
{
    return m_modules->modules(side, m_prefs->current());
}

QList<LedgewiseModule *> AppModel::allModules()
{
    return m_modules->all();
}

bool AppModel::reduceMotion()
{
    return m_motion && m_motion->reduceMotion();
}

bool AppModel::ownDialogOpen()
{
    return m_desktop.chooser && m_desktop.chooser->isOpen();
}

void AppModel::performDropAction(DropAction action, const DropPayload &payload)
{
    // A large file or folder takes a while: saves run on a worker, one after another.
    if (action == DropAction::save) {
        m_dropSaves->save(payload);
        return;
    }
    // All of a long text for a mail or a phone: converted, or written to a file to
    // attach, on a worker; handed on from the main thread, if Ledgewise still runs.
    if (DropPreparation::isSlow(action, payload)) {
        QPointer<AppModel> self(this);
        const QString shareFolder = QDir(StandardFolders::applicationCache()).filePath(QStringLiteral("Shared"));
        QThreadPool::globalInstance()->start([self, action, payload, shareFolder] {
            DropPayload prepared = DropPreparation::prepare(action, payload, shareFolder);
            QMetaObject::invokeMethod(qApp, [self, action, prepared = std::move(prepared)] {
                if (self)
                    self->performPrepared(action, prepared);
            });
        });
        return;
    }
    performPrepared(action, payload);
}

void AppModel::performPrepared(DropAction action, const DropPayload &payload)
{
    DropActions::Context context { *m_pasteboard, *m_desktop.opener, StandardFolders::downloads(), m_mail.get(),
        m_devices.get() };
    DropActions::perform(action, payload, context);
}

QObject *AppModel::deviceSender()
{
    return m_devices.get();
}

void AppModel::openSettings()
{
    // The one way in for the settings: the window arrives with its own work and opens
    // from here; until then the request is only announced.
    emit settingsRequested();
}

void AppModel::checkForUpdates()
{
    m_updates->checkForUpdates();
}

void AppModel::quit()
{
    QCoreApplication::quit();
}

SurfaceMenu &AppModel::contextMenu()
{
    if (!m_contextMenu) {
        m_contextMenu = std::make_unique<SurfaceMenu>(*m_engine,
            QList<SurfaceMenu::Entry> { { QStringLiteral("Settings…"), [this] { openSettings(); } },
                { QStringLiteral("Check for Updates…"), [this] { checkForUpdates(); } }, {},
                { QStringLiteral("Quit Ledgewise"), [this] { quit(); } } });
        // The open menu holds the keyboard, so no key grab fires: the hot keys are given
        // back meanwhile and the menu's own keys matched; a shortcut's key is not the
        // menu's (Alt+Space must not also press the highlighted entry).
        if (m_hotKeys) {
            connect(m_contextMenu.get(), &SurfaceMenu::openChanged, m_hotKeys.get(),
                &GlobalShortcuts::HotKeyCenter::setMenuTracking);
            m_contextMenu->setKeyInterceptor([this](const QKeyEvent &key) {
                const auto shortcut = m_hotKeyGrabber->shortcutFor(key.nativeScanCode(), key.nativeModifiers());
                const auto type = key.type() == QEvent::KeyPress ? GlobalShortcuts::EventType::keyDown
                                                                 : GlobalShortcuts::EventType::keyUp;
                return shortcut
                    && m_hotKeys->handleMenuKeyEvent(
                        shortcut->carbonKeyCode, shortcut->modifiers(), type, key.isAutoRepeat());
            });
        }
    }
    return *m_contextMenu;
}

void AppModel::showContextMenu(QPoint globalPosition)
{
    contextMenu().popup(globalPosition);
}

void AppModel::saveAll()
{
    m_settings->sync();
}

} // namespace ledgewise
