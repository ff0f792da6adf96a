// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** What the diver adds. It is saved while it is written, so there is nothing to lose. */
Card {
    id: root

    property var saved: null
    readonly property real diveId: saved ? saved.id : 0
    property bool writing: false
    property int error: LogbookError.NoError
    property string errorText
    // What is in the store
    property string placeKept
    property string notesKept
    // Texts of the dive that was shown before are kept under its own id.
    property real shownId: 0

    function show() {
        if (!saved)
            return;
        if (saved.id !== shownId || place.text === placeKept)
            place.text = saved.place;
        if (saved.id !== shownId || notes.text === notesKept)
            notes.text = saved.notes;
        shownId = saved.id;
        placeKept = saved.place;
        notesKept = saved.notes;
    }
    function follow(call: var, kept: var) {
        writing = true;
        const id = shownId;
        call.finished.connect(() => {
            if (!root || root.shownId !== id)
                return;
            root.writing = false;
            root.error = call.error;
            root.errorText = call.errorText;
            if (call.error === LogbookError.NoError)
                kept();
        });
    }
    function keep() {
        later.stop();
        if (!shownId)
            return;
        const newPlace = place.text;
        const newNotes = notes.text;
        if (newPlace !== placeKept)
            follow(AppStore.setPlace(shownId, newPlace), () => root.placeKept = newPlace);
        if (newNotes !== notesKept)
            follow(AppStore.setNotes(shownId, newNotes), () => root.notesKept = newNotes);
    }

    title: qsTr("Your notes")
    onDiveIdChanged: {
        if (shownId && diveId !== shownId)
            keep();
        error = LogbookError.NoError;
    }
    onSavedChanged: show()
    Component.onDestruction: keep()

    Timer {
        id: later

        interval: 400
        onTriggered: root.keep()
    }

    ColumnLayout {
        spacing: Theme.half
        Layout.fillWidth: true

        PlainText {
            text: qsTr("Place")
            color: Theme.faint
            font.pixelSize: Theme.small
            Layout.fillWidth: true
        }
        TextBox {
            id: place

            objectName: "place"
            label: qsTr("Place")
            placeholderText: qsTr("Where you dived")
            maximumLength: 1000
            Layout.fillWidth: true
            onTextEdited: later.restart()
            onEditingFinished: root.keep()
        }
    }
    ColumnLayout {
        spacing: Theme.half
        Layout.fillWidth: true

        PlainText {
            text: qsTr("Notes")
            color: Theme.faint
            font.pixelSize: Theme.small
            Layout.fillWidth: true
        }
        NoteBox {
            id: notes

            objectName: "notes"
            label: qsTr("Notes")
            placeholderText: qsTr("What you saw, who was with you")
            Layout.fillWidth: true
            onTextChanged: if (activeFocus) later.restart()
            onEditingFinished: root.keep()
        }
    }
    StoreError {
        kind: root.error
        text: root.errorText
        Layout.fillWidth: true
        onRetry: root.keep()
    }
    PlainText {
        objectName: "kept"
        readonly property bool changed: place.text !== root.placeKept || notes.text !== root.notesKept

        visible: !root.error
        text: changed || root.writing ? qsTr("Saving…") : place.text || notes.text ? qsTr("Saved") : qsTr("Saved while you write")
        color: Theme.faint
        font.pixelSize: Theme.small
        Layout.fillWidth: true
    }
}
