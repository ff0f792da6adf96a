// SPDX-License-Identifier: MIT
#pragma once

#include "device/computer.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qstringlist.h>

/** A device of its own, described as in a scenario; ends the test if the description is wrong. */
simulator::DeviceScenario device(const QByteArray &json);

/** The reason why a device cannot be described so. */
QString complaint(const QByteArray &json);

/** What a computer answers, the payload of each frame in hexadecimal. */
QStringList ask(simulator::Computer &computer, quint8 command, const QByteArray &payload = {});
QStringList ask(const QByteArray &json, quint8 command, const QByteArray &payload = {});
