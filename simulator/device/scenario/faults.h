// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <optional>

namespace simulator {

/** Where on the way from a connection to an answer something goes wrong. */
enum class Step {
    Connect,      ///< Device1.Connect
    Discover,     ///< between the link and its services
    Details,      ///< reading a descriptor or a characteristic
    Subscribe,    ///< StartNotify
    Write,        ///< WriteValue
    Answer,       ///< what the computer says to a request
    Notification, ///< one notification
    Disconnect,   ///< Device1.Disconnect
};

enum class FaultKind {
    Refuse,
    Silent,
    Late,
    Drop,
    Lost,
    Empty,
    WrongCrc,
    WrongStart,
    WrongCommand,
    WrongLength,
    Flip,
    Garbage,
    Insert,
    Append,
    Truncate,
    Split,
    Merge,
    Swap,
    Duplicate,
    Endless,
    // What happens to more than one link
    Vanish,
    AdapterGone,
    PowerOff,
    DaemonGone,
    Freeze,
};

constexpr bool isCalamity(FaultKind kind)
{
    return kind >= FaultKind::Vanish;
}

/** Where in a frame, or in what looks like one. */
enum class FaultPart { All, Header, Crc, Body };

struct Fault {
    Step step = Step::Connect;
    FaultKind kind = FaultKind::Refuse;
    std::optional<quint8> command;
    int nth = 1;
    int times = 0; ///< 0: from the nth on, always
    int ms = 0;
    int frame = 1;
    int keep = -1;
    int by = 1;
    int bit = 0;
    FaultPart part = FaultPart::All;
    QByteArray bytes;
    QString errorName;
    QString errorMessage;
};

Fault readFault(const QJsonValue &value, const QString &path);

/** Its step and its kind as a scenario spells them. */
QString nameOf(const Fault &fault);

/** The faults of one computer and how often each step was taken. */
class FaultPlan
{
public:
    FaultPlan() = default;
    explicit FaultPlan(const QList<Fault> &faults);

    /**
     * The step is taken now, for this command if it has one: what goes wrong with it, if anything.
     */
    std::optional<Fault> next(Step step, std::optional<quint8> command = std::nullopt);

private:
    struct Counted {
        Fault fault;
        int seen = 0;
    };
    QList<Counted> m_faults;
};

} // namespace simulator
