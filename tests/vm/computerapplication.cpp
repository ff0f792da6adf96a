// SPDX-License-Identifier: MIT
// varda-vm-computer-application: an application with jobs that does as it is told, a line each:
//   to ADDRESS       sets the computer
//   job NAME         asks for one of the jobs of the fault tests
//   upload FILE      asks for the upload of a firmware
//   letgo            disconnects
//   digest           prints what the last job has reported
//   forget           goes on as if it had just been started
// What comes is printed: "dive NUMBER", "lost", and of a job "ended NAME ERROR REASON".
#include <QtCore/qcoreapplication.h>
#include <QtCore/qfile.h>
#include <QtCore/qmetaobject.h>

#include <algorithm>
#include <memory>

#include "jobs.h"
#include "orders.h"

using namespace Qt::StringLiterals;

namespace {

template <typename Enum> QString nameOf(Enum value)
{
    return QString::fromLatin1(QMetaEnum::fromType<Enum>().valueToKey(int(value)));
}

class Application
{
public:
    Application() { begin(); }

    void obey(const QString &order)
    {
        const QString what = order.section(u' ', 0, 0);
        const QString with = order.section(u' ', 1);
        if (what == "to"_L1)
            m_computer->setDevice(BleDeviceInfo::fromAddress(with, u"Varda"_s));
        else if (what == "job"_L1)
            start(with);
        else if (what == "upload"_L1)
            upload(with);
        else if (what == "letgo"_L1)
            watch(u"letgo"_s, m_computer->disconnectFromComputer());
        else if (what == "digest"_L1)
            say(u"digest "_s + QString::fromUtf8(m_report->data + m_report->about));
        else if (what == "forget"_L1)
            begin();
        else
            say(u"unknown "_s + order);
    }

private:
    void begin()
    {
        m_computer = std::make_unique<VardaComputer>();
        QObject::connect(m_computer.get(), &VardaComputer::linkLost, qApp, [] { say(u"lost"_s); });
    }

    void start(const QString &name)
    {
        const auto job = std::ranges::find(allComputerJobs(), name, &Job::name);
        if (job == allComputerJobs().end()) {
            say(u"unknown job "_s + name);
            return;
        }
        m_report = std::make_shared<Report>();
        VardaJob *const asked = job->computer.ask(*m_computer, m_report);
        if (const auto *const download = qobject_cast<DownloadJob *>(asked))
            QObject::connect(download, &DownloadJob::diveRead, qApp,
                             [](const Dive & /*dive*/, const TidemarDiveHeader &header) {
                                 say(u"dive %1"_s.arg(header.diveNumber));
                             });
        watch(name, asked);
    }

    void upload(const QString &name)
    {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly))
            watch(u"upload"_s, m_computer->uploadFirmware(file.readAll(), name, true));
        else
            say(u"unknown file "_s + name);
    }

    static void watch(const QString &name, const VardaJob *job)
    {
        QObject::connect(job, &VardaJob::finished, qApp, [name](const VardaJob *ended) {
            say(u"ended %1 %2 %3"_s.arg(name, nameOf(ended->error()), nameOf(ended->reason())));
        });
    }

    std::shared_ptr<Report> m_report = std::make_shared<Report>();
    std::unique_ptr<VardaComputer> m_computer;
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    Application application;
    return obeyOrders([&](const QString &order) { application.obey(order); });
}
