// SPDX-License-Identifier: MIT
#include "run/runner.h"

#include "output/safetext.h"
#include "output/terminal.h"
#include "run/finding.h"
#include "run/recording.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qeventloop.h>
#include <QtCore/qscopeguard.h>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kConnectLimit = 60s;
constexpr auto kSearchTime = 30s; // as the library's own

} // namespace

Runner::Runner(const Options &options, Purpose purpose)
    : m_options(options), m_connectLimit(options.timeout.value_or(kConnectLimit))
{
    m_computer.setLinkMode(options.mode);
    Recording::follow(m_computer);
    connect(&m_computer, &VardaComputer::stateChanged, this, &Runner::showState);
    connect(&m_computer, &VardaComputer::deviceChanged, this,
            [this] { showStatus(u"Connected to "_s + device().name()); });
    auto failed = qScopeGuard([this] { disconnectAtEnd(); });
    find(purpose);
    failed.dismiss();
}

Runner::~Runner()
{
    disconnectAtEnd();
    clearStatus();
}

void Runner::find(Purpose purpose)
{
    showStatus(
        u"Looking for %1"_s.arg(m_options.device.isEmpty() ? u"a computer"_s : m_options.device));
    if (const auto address = addressIn(m_options.device)) {
        m_computer.setDevice(BleDeviceInfo::fromAddress(*address, {}));
    } else if (!m_options.device.isEmpty()) {
        const auto time = std::chrono::ceil<std::chrono::seconds>(m_connectLimit);
        QElapsedTimer spent;
        spent.start();
        const auto devices = devicesNamed(m_computer, m_options.device,
                                          std::min(time, std::chrono::seconds(kSearchTime)));
        m_connectLimit = std::max(m_connectLimit - std::chrono::milliseconds(spent.elapsed()),
                                  std::chrono::milliseconds(1s));
        m_computer.setDevice(chosen(devices, m_options.device));
    }
    if (purpose == Purpose::Writing)
        connectToOnly();
}

void Runner::connectToOnly()
{
    VardaJob *const connection = m_computer.connectToOnlyComputer();
    prepare(*connection);
    JobRun jobRun(connection);
    try {
        jobRun.wait();
    } catch (const Failure &) {
        if (connection->error() != VardaJob::Ambiguous)
            throw;
        showStatus(u"Looking for computers"_s);
        m_computer.setDevice(chosen(devicesNamed(m_computer, {}, kSearchTime), {}));
        run(m_computer.connectToOnlyComputer(), {});
    }
}

void Runner::prepare(VardaJob &job) const
{
    job.setConnectLimit(m_connectLimit);
    if (m_options.retries)
        job.setRetries(*m_options.retries);
}

void Runner::run(VardaJob *job, const QString &status, const ShowProgress &showProgress)
{
    prepare(*job);
    setStatus(status);
    JobRun jobRun(job);
    jobRun.wait(showProgress);
}

void Runner::setStatus(const QString &status)
{
    m_status = status;
    showState();
}

void Runner::showState()
{
    switch (m_computer.state()) {
    case VardaComputer::Unconnected:
        break;
    case VardaComputer::Searching:
        showStatus(u"Looking for %1"_s.arg(m_options.device.isEmpty() ? u"a computer"_s
                                                                      : m_options.device));
        break;
    case VardaComputer::Connecting:
        showStatus(device().name().isEmpty() ? u"Connecting"_s
                                             : u"Connecting to %1"_s.arg(device().name()));
        break;
    case VardaComputer::Connected:
        if (!m_status.isEmpty())
            showStatus(m_status);
        break;
    case VardaComputer::Settling:
        showStatus(u"Finishing"_s);
        break;
    case VardaComputer::Disconnecting:
        showStatus(u"Disconnecting"_s);
        break;
    }
}

/** Also after an interruption: who does not want to wait for the computer sends another one. */
void Runner::disconnectAtEnd()
{
    VardaJob *const job = m_computer.disconnectFromComputer();
    QEventLoop loop;
    connect(job, &VardaJob::finished, &loop, &QEventLoop::quit);
    loop.exec();
}

QString Runner::computerName() const
{
    return nameOf(device());
}

QString Runner::heading() const
{
    return safeText(computerName()) + u":\n"_s;
}
