// SPDX-License-Identifier: MIT
#include "simulator.h"

#include <QtCore/qcoreapplication.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtDBus/qdbusconnection.h>
#include <QtDBus/qdbusmessage.h>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void giveUp(const char *what)
{
    std::fprintf(stderr, "%s: cannot start %s\n", what, VARDA_SIMULATOR);
    std::_Exit(1);
}

QByteArray readLine(int fd)
{
    QByteArray line;
    char character = 0;
    while (::read(fd, &character, 1) == 1 && character != '\n')
        line += character;
    return line;
}

QDBusMessage call(const QString &method, const QVariantList &arguments = {})
{
    auto message = QDBusMessage::createMethodCall(
        u"org.varda.Simulator"_s, u"/org/varda/Simulator"_s, u"org.varda.Simulator1"_s, method);
    message.setArguments(arguments);
    return QDBusConnection::systemBus().call(message);
}

void tell(const QString &method, const QVariantList &arguments = {})
{
    const QDBusMessage reply = call(method, arguments);
    if (reply.type() == QDBusMessage::ErrorMessage)
        qFatal("%s: %s", qPrintable(method), qPrintable(reply.errorMessage()));
}

QString lineOf(const QJsonObject &event)
{
    QStringList words{event["event"_L1].toString()};
    for (const auto *key : {"characteristic", "type", "transport", "value", "hex"}) {
        const QString word = event[QLatin1String(key)].toString();
        if (!word.isEmpty())
            words.append(word);
    }
    return words.join(u' ');
}

} // namespace

void Simulator::start()
{
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
        giveUp("pipe2");

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    QByteArray program(VARDA_SIMULATOR);
    QByteArray option("--exit-with-stdin");
    const std::array<char *, 3> arguments = {program.data(), option.data(), nullptr};
    pid_t pid = 0;
    if (::posix_spawn(&pid, VARDA_SIMULATOR, &actions, nullptr, arguments.data(), environ) != 0)
        giveUp("posix_spawn");
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    // The other end of its input stays open for as long as this process lives.

    const QByteArray line = readLine(output[0]);
    const qsizetype split = line.indexOf('=');
    if (split < 0)
        giveUp("varda-simulator");
    qputenv(line.first(split).constData(), line.sliced(split + 1));
}

QString Simulator::loadScenario(const QByteArray &json)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const QDBusMessage reply = call(u"Load"_s, {QString::fromUtf8(json)});
    // What the old world had sent must not be taken for the new one's.
    QCoreApplication::processEvents();
    return reply.type() == QDBusMessage::ErrorMessage ? reply.errorMessage() : QString();
}

QString Simulator::loadDevice(const QByteArray &keys)
{
    return loadScenario(R"({"devices":[{)" + keys + "}]}");
}

QString Simulator::loadKnown(const QByteArray &keys)
{
    return loadDevice(keys.isEmpty() ? R"("known":true)" : R"("known":true,)" + keys);
}

QStringList Simulator::record(const QStringList &events)
{
    const QByteArray json = call(u"Record"_s).arguments().value(0).toString().toUtf8();
    const QJsonArray all = QJsonDocument::fromJson(json).array();
    QStringList lines;
    for (const auto &each : all) {
        const QJsonObject event = each.toObject();
        if (events.contains(event["event"_L1].toString()))
            lines.append(lineOf(event));
    }
    return lines;
}

QStringList Simulator::frames()
{
    QStringList lines = record({u"frame"_s});
    for (QString &line : lines)
        line.remove(0, 6);
    return lines;
}

qsizetype Simulator::count(const QString &event)
{
    return record({event}).size();
}

void Simulator::drop(const QByteArray &address)
{
    tell(u"Drop"_s, {QString::fromLatin1(address)});
}

void Simulator::notify(const QByteArray &bytes, const QByteArray &address)
{
    tell(u"Notify"_s, {QString::fromLatin1(address), bytes});
}

void Simulator::advertise(int rssi, const QByteArray &address)
{
    tell(u"Advertise"_s, {QString::fromLatin1(address), QVariant::fromValue(short(rssi))});
}

void Simulator::setPowered(bool powered)
{
    tell(u"SetPowered"_s, {powered});
}

void Simulator::removeAdapter()
{
    tell(u"RemoveAdapter"_s);
}

QJsonObject Simulator::state(const QByteArray &address)
{
    const QDBusMessage reply = call(u"State"_s, {QString::fromLatin1(address)});
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
}

QByteArray Simulator::firmware(const QByteArray &address)
{
    return call(u"Firmware"_s, {QString::fromLatin1(address)}).arguments().value(0).toByteArray();
}

void Simulator::settle()
{
    // One connection carries all that the simulator says, in order.
    call(u"Record"_s);
    QCoreApplication::processEvents();
}
