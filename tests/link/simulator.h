// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qstringlist.h>

/** Address of the first device of a scenario that names none. */
constexpr auto kAddress = "00:AA:01:01:00:01";

/** The simulated computers on this process' own message bus, which Qt takes for the system's. */
namespace Simulator {

/** Starts it. Comes before anything that looks at D-Bus; the process takes it down with it. */
void start();

/** Makes this the whole world, or says what is wrong with it; every link of before is gone. */
[[nodiscard]] QString loadScenario(const QByteArray &json);
/** A world of this one device; @p keys are members of a JSON object, healthy where it is silent. */
[[nodiscard]] QString loadDevice(const QByteArray &keys);
/** loadDevice() for one that the host has met already, so that it is reached without a scan. */
[[nodiscard]] QString loadKnown(const QByteArray &keys = {});

/**
 * What it saw since the scenario began, in order, without its own times.
 *
 * @param events  the kinds of events to tell; one line each, for example
 *                "write 2456…d704 command 20", "frame dcdc…", "Connect", "StartNotify 4953…9616"
 */
[[nodiscard]] QStringList record(const QStringList &events);
/** The frames that arrived, in hex. */
[[nodiscard]] QStringList frames();
/** How often something was seen. */
[[nodiscard]] qsizetype count(const QString &event);

void drop(const QByteArray &address = kAddress);
void notify(const QByteArray &bytes, const QByteArray &address = kAddress);
void advertise(int rssi, const QByteArray &address = kAddress);
void setPowered(bool powered);
void removeAdapter();
[[nodiscard]] QJsonObject state(const QByteArray &address = kAddress);
/** The last image that it has accepted. */
[[nodiscard]] QByteArray firmware(const QByteArray &address = kAddress);

/** Lets everything arrive that the simulator has sent up to now. */
void settle();

} // namespace Simulator
