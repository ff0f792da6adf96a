// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

/** A switch of Bluetooth that the kernel knows; it is above the adapter's own. */
struct RadioSwitch {
    QString name;           ///< "hci0", or that of the machine's own switch
    bool byProgram = false; ///< blocked, as by "rfkill block"
    bool byHand = false;    ///< blocked by a key or a slide of the machine

    [[nodiscard]] bool isBlocked() const { return byProgram || byHand; }
};

/** Where Linux shows them, or the folder that VARDA_RFKILL names instead; empty: nowhere. */
[[nodiscard]] QString radioSwitchFolder();
/** Those of Bluetooth in a folder like /sys/class/rfkill; none if there is no such folder. */
[[nodiscard]] QList<RadioSwitch> radioSwitches(const QString &folder);
