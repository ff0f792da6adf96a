// SPDX-License-Identifier: MIT
#include "devices.h"

using namespace Qt::StringLiterals;
using namespace simulator;

DeviceScenario device(const QByteArray &json)
{
    QString error;
    const std::optional<Scenario> scenario = Scenario::parse("{\"devices\":[" + json + "]}",
                                                             &error);
    if (!scenario)
        qFatal("%s", qPrintable(error));
    return scenario->devices.first();
}

QString complaint(const QByteArray &json)
{
    QString error;
    Scenario::parse("{\"devices\":[" + json + "]}", &error);
    return error;
}

QStringList ask(Computer &computer, quint8 command, const QByteArray &payload)
{
    QStringList answer;
    const QList<Frame> frames = computer.answer({command, payload});
    for (const Frame &frame : frames) {
        if (frame.command != command)
            return {u"another command"_s};
        answer << QString::fromLatin1(frame.payload.toHex());
    }
    return answer;
}

QStringList ask(const QByteArray &json, quint8 command, const QByteArray &payload)
{
    Computer computer(device(json));
    return ask(computer, command, payload);
}
