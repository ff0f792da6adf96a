// SPDX-License-Identifier: MIT
#include "run/finding.h"

#include "line/question.h"
#include "run/failure.h"
#include "run/jobrun.h"

#include <QtCore/qregularexpression.h>
#include <QtCore/qtimer.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/** Others may be in range whose advertisements come later. */
constexpr auto kOthersTime = 3s;

/** How well a device is what the user named. */
enum class Match { None, Beginning, Same };

Match matchOf(const BleDeviceInfo &device, const QString &name)
{
    if (!name.isEmpty() && device.name().compare(name, Qt::CaseInsensitive) == 0)
        return Match::Same;
    const bool begins = device.name().startsWith(name, Qt::CaseInsensitive);
    return begins && VardaComputer::isComputerName(device.name()) ? Match::Beginning : Match::None;
}

QStringList listOf(const QList<BleDeviceInfo> &devices)
{
    QStringList lines;
    for (qsizetype i = 0; i < devices.size(); ++i) {
        lines.append(u"%1  %2  %3  %4"_s.arg(i + 1, 2)
                         .arg(devices[i].address())
                         .arg(signalText(devices[i]), 8)
                         .arg(devices[i].name()));
    }
    return lines;
}

Failure notFound(const QString &name, std::chrono::seconds searched)
{
    const QString who = name.isEmpty() ? u"no computer"_s : name + u" was not"_s;
    return {
        ExitCode::NotFound, u"%1 found within %2 s"_s.arg(who, QString::number(searched.count())),
        u"Is it switched on, in its Bluetooth mode and near? \"varda scan --all\" lists what is "
        "in range."_s};
}

} // namespace

QString nameOf(const BleDeviceInfo &device)
{
    return u"%1 (%2)"_s.arg(device.name(), device.address());
}

QString signalText(const BleDeviceInfo &device)
{
    return device.rssi() == 0 ? u"-"_s : u"%1 dBm"_s.arg(device.rssi());
}

std::optional<QString> addressIn(const QString &text)
{
    static const QRegularExpression kAddress(QRegularExpression::anchoredPattern(
        uR"([0-9A-F]{2}([-:._ ]?)(?:[0-9A-F]{2}\1){4}[0-9A-F]{2})"_s));
    QString digits = text.trimmed().toUpper();
    if (!kAddress.match(digits).hasMatch())
        return std::nullopt;
    digits.removeIf([](QChar each) { return !each.isLetterOrNumber(); });
    for (qsizetype at = digits.size() - 2; at > 0; at -= 2)
        digits.insert(at, u':');
    return digits;
}

QList<BleDeviceInfo> devicesNamed(VardaComputer &computer, const QString &name,
                                  std::chrono::seconds time)
{
    SearchJob *const search = computer.search(time, !name.isEmpty());
    JobRun run(search);
    QTimer others;
    others.setSingleShot(true);
    QObject::connect(&others, &QTimer::timeout, search, &SearchJob::finishNow);
    const auto onDevice = [&](const BleDeviceInfo &device) {
        if (matchOf(device, name) != Match::None && !others.isActive())
            others.start(kOthersTime);
    };
    QObject::connect(search, &SearchJob::deviceFound, &others, onDevice);
    QObject::connect(search, &SearchJob::deviceChanged, &others, onDevice); // it has a name now
    run.wait();

    QList<BleDeviceInfo> same;
    QList<BleDeviceInfo> beginning;
    for (const BleDeviceInfo &device : search->devices()) {
        const Match match = matchOf(device, name);
        if (match == Match::Same)
            same.append(device);
        else if (match == Match::Beginning)
            beginning.append(device);
    }
    if (same.isEmpty() && beginning.isEmpty())
        throw notFound(name, time);
    return same.isEmpty() ? beginning : same;
}

BleDeviceInfo chosen(const QList<BleDeviceInfo> &devices, const QString &name)
{
    if (devices.size() == 1)
        return devices.first();
    if (!canAsk()) {
        const QString what = name.isEmpty() ? u"more than one computer is in range"_s
                                            : u"\"%1\" matches more than one computer"_s.arg(name);
        throw Failure{ExitCode::UsageError, what, u"Choose one by its address with --device:"_s,
                      listOf(devices)};
    }
    bool isNumber = false;
    const int number =
        ask(u"Which computer? [1-%1] "_s.arg(devices.size()), listOf(devices)).toInt(&isNumber);
    if (!isNumber || number < 1 || number > devices.size())
        throw Failure{ExitCode::JobFailed, u"no computer was chosen, nothing was changed"_s, {}};
    return devices[number - 1];
}
