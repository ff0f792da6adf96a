// SPDX-License-Identifier: MIT
#include "program/options.h"

#include "device/replay/replayscenario.h"
#include "program/failure.h"

#include <QtCore/qcommandlineparser.h>
#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

// "--radio" may stand without the address, which the parser does not know of any option.
QStringList arguments()
{
    QStringList list = QCoreApplication::arguments();
    const qsizetype radio = list.indexOf(u"--radio"_s);
    const qsizetype command = list.indexOf(u"--"_s);
    if (radio < 0 || (command >= 0 && command < radio))
        return list;
    const bool hasAddress = radio + 1 < list.size() && !list[radio + 1].startsWith(u'-');
    list[radio] += u'=' + (hasAddress ? list.takeAt(radio + 1) : QString());
    return list;
}

std::optional<Scenario> readReplay(const Options &options, QString *error)
{
    QFile file(options.replayFile);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = options.replayFile + u": "_s + file.errorString();
        return std::nullopt;
    }
    std::optional<Scenario> scenario = scenarioOfTrace(file.readAll(), error);
    if (!scenario)
        error->prepend(options.replayFile + u": "_s);
    return scenario;
}

} // namespace

std::optional<Options> parseArguments(int *status)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Simulates a diving computer: BlueZ's D-Bus API on a private message bus.\n\n"
        "With a COMMAND, runs it on that bus and exits with its status. Without one, prints\n"
        "DBUS_SYSTEM_BUS_ADDRESS=<address> and runs until it is stopped.\n\n"
        "With --radio, the computer is on the air instead, on one of this machine's adapters.\n\n"
        "Exit status: that of COMMAND; 2 if the simulator fails; 127 if COMMAND cannot be\n"
        "started."_s);
    const QCommandLineOption help({u"h"_s, u"help"_s}, u"Show this text."_s);
    const QCommandLineOption scenario(
        u"scenario"_s, u"File with the devices to simulate (default: one healthy computer)."_s,
        u"FILE"_s);
    const QCommandLineOption model(
        u"model"_s, u"Model of every computer: varda, tidemar or vskm."_s, u"MODEL"_s);
    const QCommandLineOption mode(u"mode"_s, u"Kind of link of every computer: gatt or sps."_s,
                                  u"MODE"_s);
    const QCommandLineOption record(
        u"record"_s, u"Record all events in this file, one JSON object a line."_s, u"FILE"_s);
    const QCommandLineOption exitWithStdin(u"exit-with-stdin"_s,
                                           u"Stop when standard input is closed."_s);
    const QCommandLineOption replay(
        u"replay"_s, u"Trace of a computer, which is to answer as it did then."_s, u"FILE"_s);
    const QCommandLineOption strict(
        u"strict"_s, u"With --replay: end with status 2 if anything differs from the trace."_s);
    const QCommandLineOption speed(
        u"speed"_s, u"With --replay: how fast, 1 as it was (default), 0 without pauses."_s, u"N"_s,
        u"1"_s);
    const QCommandLineOption radio(
        u"radio"_s, u"Go on the air, on the adapter with this address or the first one."_s,
        u"[ADAPTER]"_s);
    const QCommandLineOption daemonVersion(u"version"_s,
                                           u"Print the version of the simulated BlueZ."_s);
    const QCommandLineOption ownVersion(u"simulator-version"_s,
                                        u"Print the version of the simulator."_s);
    parser.addOptions({help, scenario, model, mode, record, replay, strict, speed, exitWithStdin,
                       radio, daemonVersion, ownVersion});
    parser.addPositionalArgument(u"COMMAND"_s, u"Program to run, with its arguments."_s,
                                 u"[-- COMMAND…]"_s);
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

    *status = 0;
    if (!parser.parse(arguments())) {
        *status = fail(parser.errorText());
        return std::nullopt;
    }
    if (parser.isSet(help)) {
        std::fputs(parser.helpText().toUtf8().constData(), stdout);
        return std::nullopt;
    }
    if (parser.isSet(ownVersion)) {
        std::puts(VARDA_SIMULATOR_VERSION);
        return std::nullopt;
    }
    Options options{parser.value(scenario),
                    parser.value(record),
                    {parser.value(model), parser.value(mode)},
                    parser.positionalArguments(),
                    parser.isSet(exitWithStdin),
                    parser.value(replay),
                    parser.value(speed).toDouble(),
                    parser.isSet(strict),
                    std::nullopt};
    if (parser.isSet(radio))
        options.radio = parser.value(radio);
    bool isNumber = false;
    options.speed = parser.value(speed).toDouble(&isNumber);
    const bool replays = parser.isSet(replay);
    if (!isNumber || !(options.speed >= 0)) {
        *status = fail(u"--speed: \"%1\" is not a number from 0 on"_s.arg(parser.value(speed)));
        return std::nullopt;
    }
    if (!replays && (parser.isSet(strict) || parser.isSet(speed))) {
        *status = fail(u"--strict and --speed need --replay"_s);
        return std::nullopt;
    }
    if (replays
        && (parser.isSet(scenario) || parser.isSet(model) || parser.isSet(mode)
            || parser.isSet(radio))) {
        *status = fail(u"--replay excludes --scenario, --model, --mode and --radio"_s);
        return std::nullopt;
    }
    if (options.radio && !options.command.isEmpty()) {
        *status = fail(u"--radio cannot run a COMMAND, because it has no bus"_s);
        return std::nullopt;
    }
    return options;
}

std::optional<Scenario> readScenario(const Options &options, QString *error)
{
    if (!options.replayFile.isEmpty())
        return readReplay(options, error);
    QByteArray json = QByteArrayLiteral("{\"devices\":[{}]}");
    if (!options.scenarioFile.isEmpty()) {
        QFile file(options.scenarioFile);
        if (!file.open(QIODevice::ReadOnly)) {
            *error = options.scenarioFile + u": "_s + file.errorString();
            return std::nullopt;
        }
        json = file.readAll();
    }
    const std::optional<Scenario> scenario = Scenario::parse(json, error, options.overrides);
    if (!scenario && !options.scenarioFile.isEmpty())
        error->prepend(options.scenarioFile + u": "_s);
    return scenario;
}

} // namespace simulator
