// SPDX-License-Identifier: MIT
#include "finding.h"

#include "bluetooth.h"
#include "failure.h"
#include "question.h"
#include "terminal.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qlist.h>
#include <QtCore/qregularexpression.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kScanTime = 30s; // as the library's own

/** How well a device is what the user named. */
enum class Likeness { None, Beginning, Same };

Likeness likenessToName(const BleDeviceInfo &device, const QString &name)
{
    if (device.name().compare(name, Qt::CaseInsensitive) == 0)
        return Likeness::Same;
    const bool begins = device.name().startsWith(name, Qt::CaseInsensitive);
    return begins && isComputerName(device.name()) ? Likeness::Beginning : Likeness::None;
}

/** Looks for what the user named; any computer will do where that is nothing. */
class Search
{
public:
    Search(const QString &wanted, Purpose purpose)
        : m_wanted(wanted),
          m_address(addressIn(wanted)),
          m_firstWillDo(m_address || (wanted.isEmpty() && purpose == Purpose::Reading))
    {
    }

    void run(std::chrono::seconds time)
    {
        scanFor(time, [this](const BleDeviceInfo &device) { return onDevice(device); });
    }

    /** All that may be meant. */
    [[nodiscard]] QList<BleDeviceInfo> found() const { return m_same.isEmpty() ? m_alike : m_same; }
    /** Milliseconds. */
    [[nodiscard]] qint64 sinceTheFirst() const { return m_sinceTheFirst.elapsed(); }

private:
    ScanGoes onDevice(const BleDeviceInfo &device)
    {
        const Likeness how = likeness(device);
        if (how == Likeness::None)
            return ScanGoes::On;
        // Those that the system remembers come at once, also behind the one that ended the scan.
        if (m_firstWillDo && !found().isEmpty())
            return ScanGoes::NoFurther;
        if (found().isEmpty())
            m_sinceTheFirst.start();
        (how == Likeness::Same ? m_same : m_alike).append(device);
        return m_firstWillDo ? ScanGoes::NoFurther : ScanGoes::OnForOthers;
    }

    [[nodiscard]] Likeness likeness(const BleDeviceInfo &device) const
    {
        if (!m_address && !m_wanted.isEmpty())
            return likenessToName(device, m_wanted);
        const bool same = m_address ? device.address() == *m_address
                                    : isComputerName(device.name());
        return same ? Likeness::Same : Likeness::None;
    }

    QString m_wanted;
    std::optional<QString> m_address;
    bool m_firstWillDo;
    QList<BleDeviceInfo> m_same;
    QList<BleDeviceInfo> m_alike; ///< their names begin like that
    QElapsedTimer m_sinceTheFirst;
};

QStringList listOf(const QList<BleDeviceInfo> &computers)
{
    QStringList lines;
    for (qsizetype i = 0; i < computers.size(); ++i) {
        lines.append(u"%1  %2  %3  %4"_s.arg(i + 1, 2)
                         .arg(computers[i].address())
                         .arg(signalText(computers[i]), 8)
                         .arg(computers[i].name()));
    }
    return lines;
}

/** @throws Failure  where nobody can be asked */
BleDeviceInfo chosen(const QList<BleDeviceInfo> &computers, const QString &wanted)
{
    if (!canAsk()) {
        const QString what = wanted.isEmpty()
                                 ? u"more than one computer is in reach"_s
                                 : u"more than one computer is meant by \"%1\""_s.arg(wanted);
        throw Failure{ExitCode::UsageError, what, u"Choose one by its address, with --device:"_s,
                      listOf(computers)};
    }
    bool isNumber = false;
    const int number =
        ask(u"Which computer? [1-%1] "_s.arg(computers.size()), listOf(computers)).toInt(&isNumber);
    if (!isNumber || number < 1 || number > computers.size())
        throw Failure{ExitCode::JobFailed, u"no computer was chosen, nothing was done"_s, {}};
    return computers[number - 1];
}

Failure notFound(const QString &wanted, std::chrono::seconds searched)
{
    const QString who = wanted.isEmpty() ? u"no computer"_s : wanted + u" was not"_s;
    return {
        ExitCode::NotFound, u"%1 found within %2 s"_s.arg(who, QString::number(searched.count())),
        u"Is it switched on, in its Bluetooth mode and near? \"varda scan --all\" lists what is "
        "in reach."_s};
}

} // namespace

QString nameOf(const BleDeviceInfo &computer)
{
    return u"%1 (%2)"_s.arg(computer.name(), computer.address());
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

BleDeviceInfo findComputer(const Options &options, Purpose purpose, QDeadlineTimer &deadline)
{
    showStatus(
        u"Looking for %1"_s.arg(options.device.isEmpty() ? u"a computer"_s : options.device));
    const auto left = std::chrono::milliseconds(deadline.remainingTime());
    const auto time = std::min(std::chrono::ceil<std::chrono::seconds>(left), kScanTime);
    Search search(options.device, purpose);
    search.run(time);
    const QList<BleDeviceInfo> found = search.found();
    if (found.isEmpty())
        throw notFound(options.device, time);
    const BleDeviceInfo computer = found.size() == 1 ? found.first()
                                                     : chosen(found, options.device);
    deadline += search.sinceTheFirst();
    return computer;
}
