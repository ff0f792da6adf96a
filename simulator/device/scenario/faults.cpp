// SPDX-License-Identifier: MIT
#include "device/scenario/faults.h"

#include "device/commands.h"
#include "device/scenario/jsonreader.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr std::pair<const char *, Step> kSteps[] = {
    {"connect", Step::Connect},
    {"discover", Step::Discover},
    {"details", Step::Details},
    {"subscribe", Step::Subscribe},
    {"write", Step::Write},
    {"answer", Step::Answer},
    {"notification", Step::Notification},
    {"disconnect", Step::Disconnect},
};

constexpr std::pair<const char *, FaultKind> kKinds[] = {
    {"refuse", FaultKind::Refuse},
    {"silent", FaultKind::Silent},
    {"late", FaultKind::Late},
    {"drop", FaultKind::Drop},
    {"lost", FaultKind::Lost},
    {"empty", FaultKind::Empty},
    {"wrongCrc", FaultKind::WrongCrc},
    {"wrongStart", FaultKind::WrongStart},
    {"wrongCommand", FaultKind::WrongCommand},
    {"wrongLength", FaultKind::WrongLength},
    {"flip", FaultKind::Flip},
    {"garbage", FaultKind::Garbage},
    {"insert", FaultKind::Insert},
    {"append", FaultKind::Append},
    {"truncate", FaultKind::Truncate},
    {"split", FaultKind::Split},
    {"merge", FaultKind::Merge},
    {"swap", FaultKind::Swap},
    {"duplicate", FaultKind::Duplicate},
    {"endless", FaultKind::Endless},
    {"vanish", FaultKind::Vanish},
    {"adapterGone", FaultKind::AdapterGone},
    {"powerOff", FaultKind::PowerOff},
    {"daemonGone", FaultKind::DaemonGone},
    {"freeze", FaultKind::Freeze},
};

constexpr std::pair<const char *, FaultPart> kParts[] = {
    {"all", FaultPart::All},
    {"header", FaultPart::Header},
    {"crc", FaultPart::Crc},
    {"body", FaultPart::Body},
};

template <typename... Kinds> constexpr quint32 setOf(Kinds... kinds)
{
    return ((1U << quint32(kinds)) | ...);
}

constexpr quint32 kindsAt(Step step)
{
    using enum FaultKind;
    switch (step) {
    case Step::Connect:
    case Step::Details:
    case Step::Subscribe:
        return setOf(Refuse, Silent, Late, Drop);
    case Step::Discover:
        return setOf(Empty, Silent, Late, Drop);
    case Step::Write:
        return setOf(Refuse, Silent, Late, Drop, Lost);
    case Step::Answer:
        return setOf(Refuse, Silent, Late, Drop, WrongCrc, WrongStart, WrongCommand, WrongLength,
                     Flip, Garbage, Insert, Append, Truncate, Duplicate, Endless);
    case Step::Notification:
        return setOf(Lost, Late, Drop, Empty, Garbage, Insert, Flip, Truncate, Split, Merge, Swap,
                     Duplicate);
    case Step::Disconnect:
        return setOf(Refuse, Silent, Late);
    }
    return 0;
}

bool canHappen(Step step, FaultKind kind)
{
    return isCalamity(kind) || (kindsAt(step) & setOf(kind));
}

// What the real daemon says when a peer refuses.
const char *defaultMessage(Step step)
{
    return step == Step::Connect || step == Step::Disconnect
               ? "le-connection-abort-by-local"
               : "Operation failed with ATT error: 0x80";
}

bool hasCommand(Step step)
{
    return step == Step::Write || step == Step::Answer || step == Step::Notification;
}

template <typename Value, std::size_t N>
QString nameIn(const std::pair<const char *, Value> (&names)[N], Value value)
{
    const auto *const found = std::ranges::find(names, value,
                                                &std::pair<const char *, Value>::second);
    return QLatin1String(found->first);
}

} // namespace

QString nameOf(const Fault &fault)
{
    return u"%1 at step %2"_s.arg(nameIn(kKinds, fault.kind), nameIn(kSteps, fault.step));
}

Fault readFault(const QJsonValue &value, const QString &path)
{
    constexpr int kMax = 1'000'000'000;
    ObjectReader reader(value, path);
    Fault fault;

    for (const char *needed : {"step", "kind"}) {
        if (!reader.has(needed))
            badValue(reader.path(needed), u"is missing"_s);
    }
    fault.step = reader.choice("step", Step::Connect, kSteps);
    fault.kind = reader.choice("kind", FaultKind::Refuse, kKinds);
    if (!canHappen(fault.step, fault.kind)) {
        badValue(reader.path("kind"),
                 u"\"%1\" cannot happen at step \"%2\""_s.arg(reader.take("kind").toString(),
                                                              reader.take("step").toString()));
    }

    const QJsonValue command = reader.take("command");
    if (!command.isUndefined()) {
        if (!hasCommand(fault.step))
            badValue(reader.path("command"), u"this step has no command"_s);
        const QString text = command.isDouble() ? QString::number(command.toInteger(-1))
                                                : readText(command, reader.path("command"));
        fault.command = commandFromText(text);
        if (!fault.command)
            badValue(reader.path("command"), u"unknown command \"%1\""_s.arg(text));
    }

    const bool once = reader.has("nth");
    fault.nth = int(reader.integer("nth", 1, 1, kMax));
    fault.times = int(reader.integer("times", once ? 1 : 0, 0, kMax));
    fault.ms = int(reader.integer("ms", 0, 0, 3'600'000));
    if (fault.kind == FaultKind::Freeze && fault.ms == 0)
        badValue(reader.path("ms"), u"is missing"_s);
    fault.frame = int(reader.integer("frame", 1, 1, kMax));
    fault.keep = int(reader.integer("keep", -1, 0, kMax));
    fault.by = int(reader.integer("by", 1, -0xFFFF, 0xFFFF));
    fault.bit = int(reader.integer("bit", 0, 0, kMax));
    fault.part = reader.choice("part", FaultPart::All, kParts);
    fault.bytes = reader.hex("bytes", QByteArray::fromHex("00ff17d0c5a41e6b9903e87742"));
    fault.errorName = reader.text("error", u"org.bluez.Error.Failed"_s);
    fault.errorMessage = reader.text("message", QLatin1String(defaultMessage(fault.step)));
    reader.finish();
    return fault;
}

FaultPlan::FaultPlan(const QList<Fault> &faults)
{
    for (const Fault &fault : faults)
        m_faults.append({fault, 0});
}

std::optional<Fault> FaultPlan::next(Step step, std::optional<quint8> command)
{
    std::optional<Fault> found;
    for (Counted &counted : m_faults) {
        const Fault &fault = counted.fault;
        if (fault.step != step || (fault.command && fault.command != command))
            continue;
        ++counted.seen;
        const bool inForce = counted.seen >= fault.nth
                             && (fault.times == 0 || counted.seen < fault.nth + fault.times);
        if (inForce && !found)
            found = fault;
    }
    return found;
}

} // namespace simulator
