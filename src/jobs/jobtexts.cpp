// SPDX-License-Identifier: MIT
#include <QtCore/qcoreapplication.h>

#include <algorithm>
#include <array>

#include "jobs/vardajob_p.h"

namespace {

using Reason = VardaJob::Reason;

/** %1 is the job, %2 the computer, %3 what the system said. */
struct Line {
    Reason reason;
    const char *text;
    const char *remedy;
};

constexpr const char *kNear = QT_TRANSLATE_NOOP("VardaJob", "Is it still on and near?");
constexpr const char *kNearer = QT_TRANSLATE_NOOP("VardaJob", "Try again, nearer to the computer.");

constexpr std::array kLines = {
    Line{Reason::BadArgument, QT_TRANSLATE_NOOP("VardaJob", "%1: the computer has no such thing"),
         ""},
    Line{Reason::TooLong, QT_TRANSLATE_NOOP("VardaJob", "%1: too long for one write"),
         QT_TRANSLATE_NOOP("VardaJob", "Use a shorter text.")},
    Line{Reason::UnknownImage,
         QT_TRANSLATE_NOOP("VardaJob", "%1: unknown image type (word at byte 512)"),
         QT_TRANSLATE_NOOP("VardaJob", "Is the file an image for this computer?")},
    Line{Reason::SameVersion,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer has this version already"), ""},
    Line{Reason::BootloaderUnknown,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the version of the computer's bootloader is not known"),
         QT_TRANSLATE_NOOP("VardaJob", "Restart the computer and try again.")},

    Line{Reason::ComputerRefused, QT_TRANSLATE_NOOP("VardaJob", "%1: the computer refused"), ""},
    Line{Reason::BeginRefused,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer refused it at the beginning"), ""},
    Line{Reason::BlockRefused,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer refused a block of it"), ""},
    Line{Reason::EndRefused,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer has all of it and refused it at the end"),
         ""},

    Line{Reason::WrongChecksum,
         QT_TRANSLATE_NOOP(
             "VardaJob", "%1: the computer's answer was damaged on the way, its checksum is wrong"),
         kNearer},
    Line{Reason::IncompleteFrame,
         QT_TRANSLATE_NOOP(
             "VardaJob",
             "%1: the computer's answer lacks a part, which came too late or not at all"),
         kNearer},
    Line{Reason::TooManyNotifications,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer's answer is too long"), ""},
    Line{Reason::Undecodable,
         QT_TRANSLATE_NOOP(
             "VardaJob",
             "%1: the computer's answer was damaged on the way, part of it cannot be decoded"),
         kNearer},
    Line{Reason::SmallMtu,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the computer's answer came in pieces and could not be "
                                       "put together"),
         QT_TRANSLATE_NOOP("VardaJob", "The link's packets are too small for it.")},
    Line{Reason::OtherSubscriber,
         QT_TRANSLATE_NOOP("VardaJob", "%2 sends everything more than once"),
         QT_TRANSLATE_NOOP("VardaJob", "Another program here is connected to it, or was: close "
                                       "that first.")},

    Line{Reason::NoAnswer, QT_TRANSLATE_NOOP("VardaJob", "%1: no answer from %2"),
         QT_TRANSLATE_NOOP("VardaJob",
                           "Is it still on and near? Its firmware may not know this request.")},
    Line{Reason::NoEnd,
         QT_TRANSLATE_NOOP("VardaJob",
                           "%1: the computer's answer did not end, so the link was dropped"),
         kNearer},
    Line{Reason::TotalLimit, QT_TRANSLATE_NOOP("VardaJob", "%1: took too long"), kNearer},

    Line{Reason::LinkFailed, QT_TRANSLATE_NOOP("VardaJob", "could not connect to %2: %3"), kNear},
    Line{Reason::NoService,
         QT_TRANSLATE_NOOP("VardaJob",
                           "could not connect to %2: it has no service of a diving computer"),
         QT_TRANSLATE_NOOP("VardaJob", "Is it a computer of this family?")},
    Line{Reason::OtherLinkMode,
         QT_TRANSLATE_NOOP("VardaJob", "could not connect to %2: it offers the other kind of link"),
         QT_TRANSLATE_NOOP("VardaJob", "Allow both kinds of link.")},
    Line{Reason::WriteFailed,
         QT_TRANSLATE_NOOP("VardaJob", "%1: the system refused to send the request"),
         QT_TRANSLATE_NOOP("VardaJob", "It may be longer than the link allows: try with less.")},

    Line{Reason::NoAdapter, QT_TRANSLATE_NOOP("VardaJob", "no Bluetooth adapter found"),
         QT_TRANSLATE_NOOP("VardaJob", "Is there one, and does the Bluetooth service run? "
                                       "(systemctl status bluetooth)")},
    Line{Reason::AdapterOff, QT_TRANSLATE_NOOP("VardaJob", "Bluetooth is switched off"),
         QT_TRANSLATE_NOOP("VardaJob", "Switch it on. (bluetoothctl power on)")},
    Line{Reason::AdapterRemoved, QT_TRANSLATE_NOOP("VardaJob", "the Bluetooth adapter was removed"),
         QT_TRANSLATE_NOOP("VardaJob", "Plug it in again.")},
    Line{Reason::ServiceGone,
         QT_TRANSLATE_NOOP("VardaJob", "the system's Bluetooth service does not run, or has ended"),
         QT_TRANSLATE_NOOP("VardaJob", "Does it run? (systemctl status bluetooth)")},
    Line{Reason::ServiceFrozen,
         QT_TRANSLATE_NOOP("VardaJob", "the system's Bluetooth service does not answer"),
         QT_TRANSLATE_NOOP("VardaJob", "Restart it. (systemctl restart bluetooth)")},
    Line{Reason::PermissionDenied,
         QT_TRANSLATE_NOOP("VardaJob", "this program may not use Bluetooth"),
         QT_TRANSLATE_NOOP("VardaJob", "Allow it in the system's settings.")},
    Line{Reason::NotSupported,
         QT_TRANSLATE_NOOP("VardaJob", "Bluetooth is not supported on this system"), ""},

    Line{Reason::ByCaller, QT_TRANSLATE_NOOP("VardaJob", "%1: cancelled"), ""},
    Line{Reason::ByDisconnect,
         QT_TRANSLATE_NOOP("VardaJob", "%1: cancelled, because the computer was disconnected"), ""},
    Line{Reason::ByOtherDevice,
         QT_TRANSLATE_NOOP("VardaJob", "%1: cancelled, because another computer was chosen"), ""},
    Line{Reason::ComputerDeleted,
         QT_TRANSLATE_NOOP("VardaJob", "%1: cancelled, because nobody needs it any more"), ""},

    Line{Reason::StoreFailed, QT_TRANSLATE_NOOP("VardaJob", "%1: could not be stored"), ""},

    Line{Reason::Silent, QT_TRANSLATE_NOOP("VardaJob", "no computer found within %3 s"),
         QT_TRANSLATE_NOOP("VardaJob", "Is it switched on, in its Bluetooth mode and near?")},
    Line{Reason::ConnectLimit,
         QT_TRANSLATE_NOOP("VardaJob", "%2 was found, but not connected within %3 s"),
         QT_TRANSLATE_NOOP("VardaJob", "Is it still on, and not connected to something else?")},
    Line{Reason::ManyInReach,
         QT_TRANSLATE_NOOP("VardaJob", "%1: more than one computer is in range"),
         QT_TRANSLATE_NOOP("VardaJob", "Choose one.")},
    Line{Reason::OtherComputer,
         QT_TRANSLATE_NOOP("VardaJob",
                           "%1: another part of this program is connected to the computer"),
         QT_TRANSLATE_NOOP("VardaJob", "Disconnect it there first.")},
};

const Line *lineOf(Reason reason)
{
    const auto *const it = std::find_if(kLines.begin(), kLines.end(),
                                        [=](const Line &line) { return line.reason == reason; });
    return it == kLines.end() ? nullptr : it;
}

QString translated(const char *text)
{
    return QCoreApplication::translate("VardaJob", text);
}

const char *templateOf(const JobEnd &end, bool computerIsKnown)
{
    // Of a link that was up, the sentence about connecting would be wrong.
    if (end.error == VardaJob::LinkLost && end.reason == Reason::LinkFailed)
        return QT_TRANSLATE_NOOP("VardaJob", "the link to %2 was lost");
    if (end.reason == Reason::LinkFailed && end.detail.isEmpty())
        return QT_TRANSLATE_NOOP("VardaJob", "could not connect to %2");
    if (end.reason == Reason::Silent && computerIsKnown)
        return QT_TRANSLATE_NOOP("VardaJob", "%2 was not found within %3 s");
    const Line *const line = lineOf(end.reason);
    return line ? line->text : QT_TRANSLATE_NOOP("VardaJob", "%1: failed");
}

} // namespace

QString textOf(const JobEnd &end, const QString &job, const QString &computer)
{
    const QString who = computer.isEmpty()
                            ? translated(QT_TRANSLATE_NOOP("VardaJob", "the computer"))
                            : computer;
    // One pass: what a computer calls itself may hold place markers too.
    QString text;
    const QString pattern = translated(templateOf(end, !computer.isEmpty()));
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar next = i + 1 < pattern.size() ? pattern[i + 1] : QChar();
        if (pattern[i] != u'%' || next < u'1' || next > u'3') {
            text += pattern[i];
            continue;
        }
        text += next == u'1' ? job : next == u'2' ? who : end.detail;
        ++i;
    }
    return text;
}

QString remedyOf(Reason reason)
{
    const Line *const line = lineOf(reason);
    return line && *line->remedy ? translated(line->remedy) : QString();
}
