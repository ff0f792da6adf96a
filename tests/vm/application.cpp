// SPDX-License-Identifier: MIT
// varda-vm-application: an application with a session that does as it is told, a line each:
//   auto MODE           connects to the first computer that it finds, over gatt or sps
//   to ADDRESS MODE     connects to a known one
//   reconnect           connects again after a link went down
//   letgo               lets the computer go
//   job NAME            starts one of the jobs of the fault tests
//   upload FILE         sends a firmware
//   samples NUMBER      reads a dive
//   digest              prints all that the session has learned
//   forget              goes on with a new session
// All that the session tells is printed, a line each.
#include <QtCore/qcoreapplication.h>

#include <algorithm>

#include "jobs.h"
#include "orders.h"
#include "signallog.h"

using namespace Qt::StringLiterals;

namespace {

class Application
{
public:
    Application() { begin(); }

    void obey(const QString &order)
    {
        const QString what = order.section(u' ', 0, 0);
        const QString with = order.section(u' ', 1, 1);
        if (what == "auto"_L1)
            m_session->autoConnect(mode(with));
        else if (what == "to"_L1)
            m_session->connectTo(BleDeviceInfo::fromAddress(with, u"Varda"_s),
                                 mode(order.section(u' ', 2, 2)));
        else if (what == "reconnect"_L1)
            m_session->controllerConnect();
        else if (what == "letgo"_L1)
            m_session->controllerDisconnect();
        else if (what == "job"_L1)
            start(with);
        else if (what == "upload"_L1)
            say(u"upload %1"_s.arg(m_session->uploadFirmware(with, true)));
        else if (what == "samples"_L1)
            m_session->startGetDiveSamples(with.toUShort());
        else if (what == "digest"_L1)
            say(u"digest "_s + QString::fromUtf8(digestOf(*m_session)));
        else if (what == "forget"_L1)
            begin();
        else
            say(u"unknown "_s + order);
    }

private:
    void begin()
    {
        m_session = std::make_unique<VardaSession>();
        m_log = std::make_unique<SignalLog>();
        m_log->react = [](const QString &entry) {
            if (!entry.startsWith("uploadFirmwareProgress"_L1))
                say(entry);
        };
        m_log->watch(m_session.get());
    }

    void start(const QString &name)
    {
        const auto job = std::ranges::find(allJobs(), name, &Job::name);
        if (job == allJobs().end())
            say(u"unknown job "_s + name);
        else
            job->start(*m_session);
    }

    static BleMode mode(const QString &text)
    {
        return text == "sps"_L1 ? BleMode::Sps : BleMode::Gatt;
    }

    std::unique_ptr<SignalLog> m_log;
    std::unique_ptr<VardaSession> m_session; // last: it tells of its end
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Application application;
    return obeyOrders([&](const QString &order) { application.obey(order); });
}
