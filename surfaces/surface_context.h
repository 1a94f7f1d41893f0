// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "dragdrop/drop_action.h"
#include "surfaces/notch_side.h"

#include <QList>
#include <QObject>
#include <QString>

namespace ledgewise {

class DropSaves;
class LedgewiseModule;
class PreferencesStore;
struct DropPayload;

// What the surfaces need from the application: its preferences and modules (each with
// its glance), the drop actions and the commands of the context menu. Surfaces hold it
// through a QPointer: when it is gone they fall back to the default preferences.
class SurfaceContext : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual PreferencesStore &preferencesStore() = 0;
    virtual QList<LedgewiseModule *> modulesOf(NotchSide side) = 0;
    // Every catalogued module, on a side or not: an active one shows on every surface.
    virtual QList<LedgewiseModule *> allModules() = 0;
    // The desktop asks for less motion.
    virtual bool reduceMotion() { return false; }
    // One of Ledgewise's own dialogs (a file chooser a panel asked for) waits for the
    // user: clicks in it are not clicks elsewhere, and the surface waits for it.
    virtual bool ownDialogOpen() { return false; }

    // Save runs in the background: `dropSaves` shows how far it got.
    virtual void performDropAction(DropAction action, const DropPayload &payload) = 0;
    virtual DropSaves *dropSaves() { return nullptr; }
    // The paired phones Send to Device reaches (KdeConnectDevices), or nullptr.
    virtual QObject *deviceSender() { return nullptr; }
    virtual void openSettings() = 0;
    virtual void checkForUpdates() = 0;
    virtual void quit() = 0;
};

} // namespace ledgewise
