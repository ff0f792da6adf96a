// SPDX-License-Identifier: MIT
#include "download.h"

#include <varda/tidemardiveconverter.h>

#include <algorithm>

using namespace Qt::StringLiterals;

void Download::takeDive(const TidemarDiveHeader &header, const QList<DiveSample> &samples,
                        const Dive &dive)
{
    double deepest = 0;
    for (const DiveLine &line : dive.lines)
        deepest = std::max(deepest, line.depth);
    addToFingerprint(header, samples, dive);
    if (double(dive.lines.size()) != dive.count1 || deepest != dive.tenths1)
        blame(u"dive %1 has %2 samples down to %3 m, its header tells %4 and %5 m"_s
                  .arg(dive.diveNumber)
                  .arg(dive.lines.size())
                  .arg(deepest)
                  .arg(dive.count1)
                  .arg(dive.tenths1));
    ++m_dives;
    m_samples += dive.lines.size();
    if (take)
        take(dive);
}

void Download::blame(const QString &what)
{
    if (m_problem.isEmpty())
        m_problem = what;
    m_done = true;
}

namespace {

class SessionDownload final : public Download
{
public:
    explicit SessionDownload(VardaSession &session);

private:
    void onEnd(TidemarCommand::TidemarCommandIn command);
    void next();

    VardaSession &m_session;
};

SessionDownload::SessionDownload(VardaSession &session) : m_session(session)
{
    connect(&session, &VardaSession::connectControllerStatus, this, [this](auto status) {
        if (status == ConnectControllerStatus::Connected)
            m_session.startCommand(TidemarCommand::Identification);
        else
            blame(m_session.message());
    });
    connect(&session, &VardaSession::endCommand, this, &SessionDownload::onEnd);
    connect(&session, &VardaSession::exchangeError, this,
            [this](TidemarCommand::TidemarCommandIn command) {
                blame(u"command %1 failed"_s.arg(int(command)));
            });
    connect(&session, &VardaSession::messageChanged, this, [this] {
        if (m_session.message() == "Receive timeout"_L1
            || m_session.message().startsWith("BLE error"_L1))
            blame(m_session.message());
    });
    connect(&session, &VardaSession::disconnectController, this, [this] {
        if (!isDone())
            blame(u"the link went down"_s);
    });
}

void SessionDownload::onEnd(TidemarCommand::TidemarCommandIn command)
{
    switch (command) {
    case TidemarCommand::Identification:
        m_session.startCommand(TidemarCommand::Owner);
        return;
    case TidemarCommand::Owner:
        addToFingerprint(m_session.owner());
        m_session.startGetLogbook({});
        return;
    case TidemarCommand::Fullsamples: {
        const TidemarDiveHeader header = m_session.diveHeaders()[dives()];
        takeDive(header, m_session.diveSamples(),
                 TidemarDiveConverter::toDive(header, m_session.diveSamples(), m_session));
        break;
    }
    default:
        break;
    }
    next();
}

void SessionDownload::next()
{
    if (dives() < m_session.diveHeaders().size())
        m_session.startGetDiveSamples(m_session.diveHeaders()[dives()].diveNumber);
    else
        finish();
}

class JobDownload final : public Download
{
public:
    explicit JobDownload(VardaComputer &computer);

private:
    /** What a job reports of its end. */
    void end(const VardaJob &job);
};

JobDownload::JobDownload(VardaComputer &computer)
{
    auto *const owner = computer.readOwner();
    connect(owner, &VardaJob::finished, this, [this, owner] {
        addToFingerprint(owner->result());
        end(*owner);
    });
    auto *const download = computer.downloadDives();
    connect(download, &DownloadJob::diveRead, this,
            [this](const Dive &dive, const TidemarDiveHeader &header,
                   const QList<DiveSample> &samples) { takeDive(header, samples, dive); });
    connect(download, &VardaJob::finished, this, [this, download] {
        end(*download);
        if (!download->damaged().isEmpty())
            blame(u"dives came damaged"_s);
        finish();
    });
}

void JobDownload::end(const VardaJob &job)
{
    if (job.error() != VardaJob::NoError)
        blame(job.errorText());
}

} // namespace

std::unique_ptr<Download> SessionReader::read(const BleDeviceInfo &device, BleMode mode)
{
    auto download = std::make_unique<SessionDownload>(m_session);
    if (device.isValid())
        m_session.connectTo(device, mode);
    else
        m_session.autoConnect(mode);
    return download;
}

std::unique_ptr<Download> JobReader::read(const BleDeviceInfo &device, BleMode mode)
{
    m_computer.setDevice(device);
    m_computer.setLinkMode(mode);
    return std::make_unique<JobDownload>(m_computer);
}
