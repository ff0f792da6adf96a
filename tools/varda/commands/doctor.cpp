// SPDX-License-Identifier: MIT
#include "commands/commands.h"
#include "line/arguments.h"
#include "line/options.h"
#include "output/json.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "run/files.h"
#include "run/finding.h"
#include "run/jobfailure.h"
#include "run/jobrun.h"
#include "run/recording.h"

#include <varda/vardadoctor.h>

#include <QtCore/qbuffer.h>
#include <QtCore/qmetaobject.h>
#include <QtCore/qsysinfo.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kSearchTime = 10s; // as the library's own

template <typename Enumeration> QString keyOf(Enumeration value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enumeration>().valueToKey(int(value)));
}

/** "BluetoothService" as "Bluetooth service". */
QString labelOf(VardaCheck::Subject subject)
{
    switch (subject) {
    case VardaCheck::Subject::QtBluetooth:
        return u"Qt Bluetooth"_s;
    case VardaCheck::Subject::Mtu:
        return u"MTU"_s;
    default:
        break;
    }
    QString label;
    for (const QChar each : keyOf(subject)) {
        if (each.isUpper() && !label.isEmpty())
            label += u' ' + QString(each.toLower());
        else
            label += each;
    }
    return label;
}

/** "Fault: Bluetooth is switched off (hci0 off)". */
QString lineOf(const VardaCheck &check)
{
    const bool isSound = check.state == VardaCheck::State::Ok;
    QString line = isSound ? check.text : keyOf(check.state) + u": "_s + check.text;
    if (!check.lookedAt.isEmpty())
        line += u" (%1)"_s.arg(check.lookedAt);
    return safeText(line);
}

void printText(const QList<VardaCheck> &checks)
{
    Table table;
    for (const VardaCheck &each : checks) {
        if (each.state != VardaCheck::State::Skipped)
            table.add(labelOf(each.subject), lineOf(each));
    }
    print(table.text(outputStyle()));
    for (const VardaCheck &each : checks) {
        if (each.state == VardaCheck::State::Warning) {
            printWarning(each.text);
            printHint(u"       %1\n"_s.arg(each.remedy));
        }
    }
}

Fields fieldsOf(const VardaCheck &check)
{
    const auto orNull = [](const QString &text) { return text.isEmpty() ? Json(nullptr) : text; };
    return {{"check"_L1, keyOf(check.subject)},
            {"state"_L1, keyOf(check.state)},
            {"reason"_L1,
             check.reason == VardaJob::Reason::None ? Json(nullptr) : Json(keyOf(check.reason))},
            {"lookedAt"_L1, orNull(check.lookedAt)},
            {"text"_L1, check.text},
            {"remedy"_L1, orNull(check.remedy)}};
}

Fields documentOf(const VardaDoctor &doctor)
{
    return {{"healthy"_L1, doctor.fault().state != VardaCheck::State::Fault},
            {"checks"_L1,
             listOf(doctor.checks(), [](const VardaCheck &check) { return fieldsOf(check); })}};
}

/** What helps somebody else to help; it names nobody. */
QByteArray reportOf(const VardaDoctor &doctor, const QByteArray &trace)
{
    Fields report{{"varda"_L1, QStringLiteral(VARDA_VERSION)},
                  {"qt"_L1, QString::fromLatin1(qVersion())},
                  {"system"_L1, QSysInfo::prettyProductName()},
                  {"kernel"_L1, QSysInfo::kernelType() + u' ' + QSysInfo::kernelVersion()},
                  {"architecture"_L1, QSysInfo::currentCpuArchitecture()}};
    append(report, documentOf(doctor));
    if (!trace.isEmpty())
        append(report, {{"trace"_L1, listOf(QString::fromUtf8(trace).trimmed().split(u'\n'))}});
    return safeJson(QString::fromUtf8(Json(report).text())).toUtf8() + '\n';
}

Failure failureOf(const VardaCheck &fault)
{
    const ExitCode code = fault.error == VardaJob::NoError ? ExitCode::JobFailed
                                                           : exitCodeOf(fault.error);
    return {code, fault.text,
            fault.reason == VardaJob::Reason::OtherLinkMode ? u"Try without --mode."_s
                                                            : fault.remedy};
}

class Doctor : public Command
{
public:
    Doctor() : Command("doctor", "Find out why a computer cannot be reached") { }

    void declare(Arguments &arguments) override
    {
        arguments.option("--report", "FILE", m_report,
                         "Also write all of it to a file, to ask for help");
    }

    void run(const Options &options) const override
    {
        VardaComputer computer;
        computer.setLinkMode(options.mode);
        QBuffer trace;
        if (!options.record.isEmpty()) {
            Recording::follow(computer); // a computer has one trace
        } else if (!m_report.isEmpty()) {
            trace.open(QIODevice::WriteOnly);
            computer.setTrace(&trace);
        }
        setDevice(computer, options);
        VardaDoctor *const doctor = VardaDoctor::examine(computer);
        if (options.timeout)
            doctor->setConnectLimit(*options.timeout);
        if (options.retries)
            doctor->setRetries(*options.retries);
        JobRun jobRun(doctor);
        showStatus(u"Examining"_s);
        QObject::connect(doctor, &VardaDoctor::checked, &jobRun, [](const VardaCheck &check) {
            showStatus(u"%1: %2"_s.arg(labelOf(check.subject), check.text));
        });
        jobRun.wait();
        clearStatus();
        if (options.json)
            print(documentOf(*doctor));
        else if (!isStandardOutput(m_report))
            printText(doctor->checks());
        computer.setTrace(nullptr);
        if (!m_report.isEmpty())
            writeFile(m_report, reportOf(*doctor, trace.data()));
        if (const VardaCheck fault = doctor->fault(); fault.state == VardaCheck::State::Fault)
            throw failureOf(fault);
    }

private:
    /** What keeps a name from being found is what the examination is for. */
    static void setDevice(VardaComputer &computer, const Options &options)
    {
        if (options.device.isEmpty())
            return;
        if (const auto address = addressIn(options.device)) {
            computer.setDevice(BleDeviceInfo::fromAddress(*address, {}));
            return;
        }
        showStatus(u"Looking for %1"_s.arg(options.device));
        try {
            const auto time = std::min<std::chrono::seconds>(options.timeout.value_or(kSearchTime),
                                                             kSearchTime);
            computer.setDevice(
                chosen(devicesNamed(computer, options.device, time), options.device));
        } catch (const Failure &failure) {
            if (failure.code != ExitCode::NotFound && failure.code != ExitCode::NoBluetooth)
                throw;
            computer.setDevice(BleDeviceInfo::fromAddress({}, options.device));
        }
    }

    QString m_report;
};

} // namespace

void addDoctor(Commands &commands)
{
    commands.push_back(std::make_unique<Doctor>());
}
