// SPDX-License-Identifier: MIT
#include "device/faults.h"

#include "device/commands.h"
#include "device/jsonreader.h"

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
    {"garbage", FaultKind::Garbage},
    {"truncate", FaultKind::Truncate},
    {"duplicate", FaultKind::Duplicate},
};

bool canHappen(Step step, FaultKind kind)
{
    using enum FaultKind;
    switch (step) {
    case Step::Connect:
    case Step::Details:
    case Step::Subscribe:
        return kind == Refuse || kind == Silent || kind == Late || kind == Drop;
    case Step::Discover:
        return kind == Empty || kind == Silent || kind == Late || kind == Drop;
    case Step::Write:
        return kind == Refuse || kind == Silent || kind == Late || kind == Drop || kind == Lost;
    case Step::Answer:
        return kind != Lost && kind != Empty;
    case Step::Notification:
        return kind == Drop || kind == Lost || kind == Late || kind == Duplicate || kind == Empty
               || kind == Garbage;
    case Step::Disconnect:
        return kind == Refuse || kind == Silent || kind == Late;
    }
    return false;
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

} // namespace

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
            badValue(reader.path("command"), u"this step belongs to no command"_s);
        const QString text = command.isDouble() ? QString::number(command.toInteger(-1))
                                                : readText(command, reader.path("command"));
        fault.command = commandFromText(text);
        if (!fault.command)
            badValue(reader.path("command"), u"\"%1\" is no command"_s.arg(text));
    }

    const bool once = reader.has("nth");
    fault.nth = int(reader.integer("nth", 1, 1, kMax));
    fault.times = int(reader.integer("times", once ? 1 : 0, 0, kMax));
    fault.ms = int(reader.integer("ms", 0, 0, 3'600'000));
    fault.frame = int(reader.integer("frame", 1, 1, kMax));
    fault.keep = int(reader.integer("keep", -1, 0, kMax));
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
