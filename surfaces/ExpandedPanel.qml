// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import Ledgewise.DragDrop

// What an open surface shows: a save under way, the actions of a drop, or the side's
// modules, one below the other.
ColumnLayout {
    id: panel
    objectName: "expandedPanel"
    required property QtObject controller
    readonly property QtObject surface: controller.surface
    anchors.fill: parent
    anchors.topMargin: 10
    anchors.bottomMargin: 8
    spacing: 10

    // A save of a drop still under way, above whatever the surface shows.
    Loader {
        Layout.fillWidth: true
        active: panel.controller.saves !== null && panel.controller.saves.saving
        visible: active
        sourceComponent: DropSaveProgressView {
            objectName: "saveProgress"
            saves: panel.controller.saves
        }
    }

    // Made only while something was dropped, so that a screen reader never
    // meets the buttons of a drop that is not there.
    Loader {
        Layout.fillWidth: true
        active: panel.surface.hasDropPayload
        visible: active
        sourceComponent: DropActionsView {
            objectName: "dropActions"
            summary: panel.controller.dropSummary
            notice: panel.controller.dropNotice
            actions: panel.controller.dropActions
            devices: panel.controller.devices
            onActionChosen: action => panel.controller.performDropAction(action)
        }
    }

    Repeater {
        model: panel.surface.hasDropPayload ? [] : panel.controller.modules
        // A panel exists only while the surface is open: each opening starts it
        // afresh, so what was typed, stepped or scrolled last time is gone.
        delegate: Loader {
            required property QtObject modelData
            objectName: "modulePanel_" + modelData.id
            Layout.fillWidth: true
            Component.onCompleted: setSource(modelData.expandedView, modelData.expandedViewProperties)
        }
    }

    Item {
        Layout.fillHeight: true
    }
}
