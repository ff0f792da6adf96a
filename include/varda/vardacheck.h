// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>
#include <QtCore/qmetatype.h>
#include <QtCore/qobjectdefs.h>
#include <QtCore/qstring.h>

#include <varda/vardaexport.h>
#include <varda/vardajob.h>

/**
 * What a VardaDoctor has found out about one thing between a program and a computer. It holds no
 * address, no serial number and nobody's name.
 */
struct VARDA_EXPORT VardaCheck {
    Q_GADGET
    Q_PROPERTY(Subject subject MEMBER subject CONSTANT)
    Q_PROPERTY(State state MEMBER state CONSTANT)
    Q_PROPERTY(VardaJob::Error error MEMBER error CONSTANT)
    Q_PROPERTY(VardaJob::Reason reason MEMBER reason CONSTANT)
    Q_PROPERTY(QString lookedAt MEMBER lookedAt CONSTANT)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(QString remedy MEMBER remedy CONSTANT)

public:
    /** In the order in which they are looked at. Values are stable: new ones are only appended. */
    enum class Subject {
        QtBluetooth,      ///< whether Qt can use Bluetooth Low Energy here
        Bus,              ///< the system's message bus; Linux
        Permission,       ///< to use Bluetooth
        BluetoothService, ///< that it runs and answers; Linux
        ServiceVersion,   ///< BlueZ 5.42 or newer; Linux
        RadioBlock,       ///< that no switch blocks the radio; Linux
        Adapter,          ///< Linux
        Power,            ///< that an adapter is on
        OtherProgram,     ///< that no other program here has a link to the computer; Linux
        Reach,            ///< that the computer is heard
        Connection,
        LinkMode,        ///< that it offers the kind of link that is insisted on
        ComputerService, ///< that it has the service of a diving computer
        Mtu,             ///< that the link carries every answer
        Subscription,    ///< that no other program gets the answers too
        Answer,          ///< that it answers, and soundly
        Mode,            ///< that it does not wait in its bootloader
        Clock,           ///< that its clock is right to two minutes
        Battery,         ///< information only: the last entry about it in the system log
    };
    Q_ENUM(Subject)

    enum class State {
        Ok,
        Warning, ///< all works, but something should be put right
        Fault,
        Unknown, ///< it could not be found out; no fault
        Skipped, ///< there is no such thing here, or a fault before it has to be removed first
    };
    Q_ENUM(State)

    Subject subject = Subject::QtBluetooth;
    State state = State::Unknown;
    // Of a fault: what a job would end with, if there is such an end
    VardaJob::Error error = VardaJob::NoError;
    VardaJob::Reason reason = VardaJob::Reason::None;
    // GCC wants the initializers where a list of them leaves the members out
    // NOLINTBEGIN(readability-redundant-member-init)
    QString lookedAt = {}; ///< one line; may be empty
    QString text = {};     ///< what was found, in one line
    QString remedy = {};   ///< of a warning or a fault: the one thing to do about it
    // NOLINTEND(readability-redundant-member-init)
};
