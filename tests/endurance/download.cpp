// SPDX-License-Identifier: MIT
#include "download.h"

#include <varda/tidemardiveconverter.h>

#include <algorithm>

#include "digest.h"

using namespace Qt::StringLiterals;

template <typename... Values> void Download::addToFingerprint(const Values &...values)
{
    Digest digest;
    digest.add(values...);
    m_hash.addData(digest.text);
}

Download::Download(VardaSession &session) : m_session(session)
{
    connect(&session, &VardaSession::connectControllerStatus, this, [this](auto status) {
        if (status == ConnectControllerStatus::Connected)
            m_session.startCommand(TidemarCommand::Identification);
        else
            blame(m_session.message());
    });
    connect(&session, &VardaSession::endCommand, this, &Download::onEnd);
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
        if (!m_done)
            blame(u"the link went down"_s);
    });
}

void Download::scan(BleMode mode)
{
    m_session.autoConnect(mode);
}

void Download::open(const BleDeviceInfo &device, BleMode mode)
{
    m_session.connectTo(device, mode);
}

void Download::onEnd(TidemarCommand::TidemarCommandIn command)
{
    switch (command) {
    case TidemarCommand::Identification:
        m_session.startCommand(TidemarCommand::Owner);
        return;
    case TidemarCommand::Owner:
        addToFingerprint(m_session.owner());
        m_session.startGetLogbook({});
        return;
    case TidemarCommand::Fullsamples:
        takeDive();
        break;
    default:
        break;
    }
    next();
}

void Download::next()
{
    if (m_dives < m_session.diveHeaders().size())
        m_session.startGetDiveSamples(m_session.diveHeaders()[m_dives].diveNumber);
    else
        m_done = true;
}

void Download::takeDive()
{
    const Dive dive = TidemarDiveConverter::toDive(m_session.diveHeaders()[m_dives],
                                                   m_session.diveSamples(), m_session);
    double deepest = 0;
    for (const DiveLine &line : dive.lines)
        deepest = std::max(deepest, line.depth);
    addToFingerprint(m_session.diveHeaders()[m_dives], m_session.diveSamples(), dive);
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
