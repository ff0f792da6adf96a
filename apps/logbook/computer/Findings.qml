// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Varda

/** The words for what an examination finds, and the one thing to do about it. */
QtObject {
    id: root

    function sound(check: var): string {
        switch (check.subject) {
        case VardaCheck.Subject.QtBluetooth:
            return qsTr("The app can use Bluetooth");
        case VardaCheck.Subject.Bus:
            return qsTr("Your system answers");
        case VardaCheck.Subject.Permission:
            return qsTr("The app may use Bluetooth");
        case VardaCheck.Subject.BluetoothService:
            return qsTr("The Bluetooth service of your system runs");
        case VardaCheck.Subject.ServiceVersion:
            return qsTr("The Bluetooth service is new enough");
        case VardaCheck.Subject.RadioBlock:
            return qsTr("Nothing blocks Bluetooth");
        case VardaCheck.Subject.Adapter:
            return qsTr("There is a Bluetooth adapter");
        case VardaCheck.Subject.Power:
            return qsTr("Bluetooth is switched on");
        case VardaCheck.Subject.OtherProgram:
            return qsTr("No other program here is connected to the computer");
        case VardaCheck.Subject.Reach:
            return qsTr("The computer is in reach");
        case VardaCheck.Subject.Connection:
            return qsTr("The computer accepts a connection");
        case VardaCheck.Subject.LinkMode:
            return qsTr("It offers the right kind of connection");
        case VardaCheck.Subject.ComputerService:
            return qsTr("It is a diving computer");
        case VardaCheck.Subject.Mtu:
            return qsTr("The connection carries enough at a time");
        case VardaCheck.Subject.Subscription:
            return qsTr("Each answer comes once");
        case VardaCheck.Subject.Answer:
            return qsTr("The computer answers");
        case VardaCheck.Subject.Mode:
            return qsTr("The computer is ready");
        case VardaCheck.Subject.Clock:
            return qsTr("The clock of the computer is right");
        case VardaCheck.Subject.Battery:
            return qsTr("Last entry about the battery: %1").arg(check.text);
        default:
            return "";
        }
    }
    function unknown(check: var): string {
        switch (check.subject) {
        case VardaCheck.Subject.Permission:
            return qsTr("Your system has not asked you yet whether the app may use Bluetooth");
        case VardaCheck.Subject.ServiceVersion:
            return qsTr("The version of the Bluetooth service is not known");
        case VardaCheck.Subject.Mtu:
            return qsTr("How much the connection carries is not known");
        default:
            return qsTr("The computer has no entry about its battery");
        }
    }
    /** For people: what was found. */
    function title(check: var): string {
        if (check.state === VardaCheck.State.Ok)
            return root.sound(check);
        if (check.state === VardaCheck.State.Unknown)
            return root.unknown(check);
        switch (check.subject) {
        case VardaCheck.Subject.Bus:
            return qsTr("Your system cannot be asked about Bluetooth");
        case VardaCheck.Subject.ServiceVersion:
            return qsTr("The Bluetooth service of your system is too old");
        case VardaCheck.Subject.RadioBlock:
            return qsTr("Bluetooth is blocked, as in airplane mode");
        case VardaCheck.Subject.OtherProgram:
            return qsTr("Another program here is connected to the computer");
        case VardaCheck.Subject.Mode:
            return qsTr("The computer waits for firmware");
        case VardaCheck.Subject.Clock:
            return qsTr("The clock of the computer is wrong");
        default:
            return Reasons.title(check.error, check.reason);
        }
    }
    /** Nothing if all is well. */
    function remedy(check: var): string {
        if (check.state !== VardaCheck.State.Fault && check.state !== VardaCheck.State.Warning)
            return "";
        switch (check.subject) {
        case VardaCheck.Subject.Bus:
            return qsTr("Restart this machine.");
        case VardaCheck.Subject.ServiceVersion:
            return qsTr("Update your system.");
        case VardaCheck.Subject.RadioBlock:
            return qsTr("End airplane mode, or use the wireless switch of this machine.");
        case VardaCheck.Subject.OtherProgram:
            return qsTr("Close the other program.");
        case VardaCheck.Subject.Mode:
            return qsTr("Install its firmware.");
        case VardaCheck.Subject.Clock:
            return qsTr("Set it when the computer is connected.");
        default:
            return Reasons.remedy(check.error, check.reason);
        }
    }
}
