// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Varda

/** The words for each reason why a job fails: what has happened, and the one thing to do about it. */
QtObject {
    id: root

    function title(error: int, reason: int): string {
        switch (reason) {
        case VardaJob.Reason.None:
            return "";
        case VardaJob.Reason.BadArgument:
            return qsTr("The computer does not have this");
        case VardaJob.Reason.TooLong:
            return qsTr("This text is too long for the computer");
        case VardaJob.Reason.UnknownImage:
            return qsTr("This file is not firmware for a diving computer");
        case VardaJob.Reason.SameVersion:
            return qsTr("The computer has this version already");
        case VardaJob.Reason.BootloaderUnknown:
            return qsTr("The computer does not say which bootloader it has");
        case VardaJob.Reason.ComputerRefused:
            return qsTr("The computer has refused");
        case VardaJob.Reason.BeginRefused:
            return qsTr("The computer does not accept this firmware");
        case VardaJob.Reason.BlockRefused:
            return qsTr("The computer has stopped the update");
        case VardaJob.Reason.EndRefused:
            return qsTr("The computer has received the firmware and does not accept it");
        case VardaJob.Reason.WrongChecksum:
            return qsTr("An answer of the computer arrived damaged");
        case VardaJob.Reason.IncompleteFrame:
            return qsTr("Part of an answer did not arrive");
        case VardaJob.Reason.TooManyNotifications:
            return qsTr("The computer’s answer was too long");
        case VardaJob.Reason.Undecodable:
            return qsTr("An answer of the computer could not be understood");
        case VardaJob.Reason.SmallMtu:
            return qsTr("The connection carries too little at a time");
        case VardaJob.Reason.OtherSubscriber:
            return qsTr("Another program is connected to the computer too");
        case VardaJob.Reason.NoAnswer:
            return qsTr("The computer does not answer");
        case VardaJob.Reason.NoEnd:
            return qsTr("The computer did not come to an end with its answer");
        case VardaJob.Reason.TotalLimit:
            return qsTr("It took too long");
        case VardaJob.Reason.LinkFailed:
            return error === VardaJob.LinkLost ? qsTr("The connection was lost")
                                               : qsTr("The computer could not be connected");
        case VardaJob.Reason.NoService:
            return qsTr("This device is not a diving computer that the app knows");
        case VardaJob.Reason.OtherLinkMode:
            return qsTr("The computer offers another kind of connection");
        case VardaJob.Reason.WriteFailed:
            return qsTr("Your system did not send the request");
        case VardaJob.Reason.NoAdapter:
            return qsTr("No Bluetooth was found here");
        case VardaJob.Reason.AdapterOff:
            return qsTr("Bluetooth is switched off");
        case VardaJob.Reason.AdapterRemoved:
            return qsTr("The Bluetooth adapter was removed");
        case VardaJob.Reason.ServiceGone:
            return qsTr("The Bluetooth service of your system does not run");
        case VardaJob.Reason.ServiceFrozen:
            return qsTr("The Bluetooth service of your system does not respond");
        case VardaJob.Reason.PermissionDenied:
            return qsTr("This app may not use Bluetooth");
        case VardaJob.Reason.NotSupported:
            return qsTr("Bluetooth does not work with diving computers here");
        case VardaJob.Reason.ByCaller:
            return qsTr("Cancelled");
        case VardaJob.Reason.ByDisconnect:
            return qsTr("Cancelled, as the computer was disconnected");
        case VardaJob.Reason.ByOtherDevice:
            return qsTr("Cancelled, as another computer was chosen");
        case VardaJob.Reason.ComputerDeleted:
            return qsTr("Cancelled, as the app was closing");
        case VardaJob.Reason.Silent:
            return qsTr("The computer was not found");
        case VardaJob.Reason.ManyInReach:
            return qsTr("More than one computer is in reach");
        case VardaJob.Reason.OtherComputer:
            return qsTr("Another part of the app is using the computer");
        case VardaJob.Reason.ConnectLimit:
            return qsTr("The computer was found, but did not connect");
        case VardaJob.Reason.StoreFailed:
            return qsTr("The dives could not be saved");
        default:
            return qsTr("This did not work");
        }
    }

    function remedy(error: int, reason: int): string {
        switch (reason) {
        case VardaJob.Reason.None:
            return "";
        case VardaJob.Reason.BadArgument:
        case VardaJob.Reason.ComputerRefused:
            return qsTr("Check what you have entered, then try again.");
        case VardaJob.Reason.TooLong:
            return qsTr("Enter a shorter one.");
        case VardaJob.Reason.UnknownImage:
        case VardaJob.Reason.BeginRefused:
        case VardaJob.Reason.EndRefused:
            return qsTr("Choose a file that is made for this model.");
        case VardaJob.Reason.SameVersion:
            return qsTr("There is nothing to do. Install it again only if the computer does not work well.");
        case VardaJob.Reason.BootloaderUnknown:
        case VardaJob.Reason.TooManyNotifications:
            return qsTr("Restart the computer, then try again.");
        case VardaJob.Reason.BlockRefused:
            return qsTr("Leave the computer switched on and near, then try again.");
        case VardaJob.Reason.WrongChecksum:
        case VardaJob.Reason.IncompleteFrame:
        case VardaJob.Reason.Undecodable:
        case VardaJob.Reason.NoEnd:
        case VardaJob.Reason.TotalLimit:
            return qsTr("Move nearer to the computer, then try again.");
        case VardaJob.Reason.SmallMtu:
        case VardaJob.Reason.WriteFailed:
            return qsTr("Switch Bluetooth off and on again on this machine, then try again.");
        case VardaJob.Reason.OtherSubscriber:
            return qsTr("Close the other program, then try again.");
        case VardaJob.Reason.NoAnswer:
            return qsTr("Look whether the computer is still on and near, then try again.");
        case VardaJob.Reason.LinkFailed:
            return error === VardaJob.LinkLost
                 ? qsTr("Keep the computer switched on and near, then try again.")
                 : qsTr("Switch on the Bluetooth mode of the computer, keep it near, then try again.");
        case VardaJob.Reason.NoService:
        case VardaJob.Reason.ManyInReach:
            return qsTr("Choose your computer from the list.");
        case VardaJob.Reason.OtherLinkMode:
            return qsTr("Choose the computer from the list once more.");
        case VardaJob.Reason.NoAdapter:
            return qsTr("Plug in a Bluetooth adapter, then try again.");
        case VardaJob.Reason.AdapterOff:
            return qsTr("Switch it on in the settings of your system, then try again.");
        case VardaJob.Reason.AdapterRemoved:
            return qsTr("Plug it in again, then try again.");
        case VardaJob.Reason.ServiceGone:
            return qsTr("Start the Bluetooth service, or restart this machine, then try again.");
        case VardaJob.Reason.ServiceFrozen:
            return qsTr("Restart this machine, then try again.");
        case VardaJob.Reason.PermissionDenied:
            return qsTr("Allow it in the settings of your system, then try again.");
        case VardaJob.Reason.NotSupported:
            return qsTr("Use a machine with Bluetooth 4.0 or newer.");
        case VardaJob.Reason.ByCaller:
        case VardaJob.Reason.ByDisconnect:
        case VardaJob.Reason.ByOtherDevice:
        case VardaJob.Reason.ComputerDeleted:
            return qsTr("Start it again when you like.");
        case VardaJob.Reason.Silent:
            return qsTr("Switch the computer on, choose its Bluetooth mode, keep it near, then try again.");
        case VardaJob.Reason.OtherComputer:
            return qsTr("Wait until that has finished, then try again.");
        case VardaJob.Reason.ConnectLimit:
            return qsTr("Disconnect it from your phone and from other machines, then try again.");
        case VardaJob.Reason.StoreFailed:
            return qsTr("Look at the file with the dives in the settings.");
        default:
            return qsTr("Try again.");
        }
    }

    /** What to do after a job; @p hint instead, if the computer has refused what the user gave. */
    function remedyOf(job: var, hint: string): string {
        if (!job)
            return "";
        if (job.outcomeUnknown)
            return qsTr("It may have been done all the same: look at the computer before you try again.");
        const given = [VardaJob.Reason.BadArgument, VardaJob.Reason.ComputerRefused, VardaJob.Reason.TooLong];
        return hint && given.includes(job.reason) ? hint : root.remedy(job.error, job.reason);
    }
    function titleOf(job: var): string {
        return job ? root.title(job.error, job.reason) : "";
    }
    /** The library's own words. */
    function detailsOf(job: var): string {
        return job ? [job.errorText, job.remedy].filter(each => each).join("\n") : "";
    }
}
