// SPDX-License-Identifier: MIT
// What the library does on a link, to be counted from outside. The counts of a short and of a long run
// differ by what a notification, or a job, costs.
#include <QtBluetooth/qlowenergycontroller.h>
#include <QtBluetooth/qlowenergyservice.h>
#include <QtCore/qcoreapplication.h>

#include <cstdio>
#include <memory>

#include <varda/vardacomputer.h>
#include <varda/vardasession.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kService = "49535343-fe7d-4ae5-8fa9-9fafd205e455"_L1;
constexpr auto kData = "49535343-1e4d-4bd9-ba61-23c647249616"_L1;
/** The request for the samples of dive 1. */
constexpr auto kRequest = "dcdc03009ebd0000140100";

BleDeviceInfo simulated()
{
    return BleDeviceInfo::fromAddress(u"00:AA:01:01:00:01"_s, u"Varda"_s);
}

/** Asks for the samples and drops the notifications, with nothing but Qt. */
class Bare : public QObject
{
public:
    explicit Bare(int notifications) : m_left(notifications)
    {
        m_controller.reset(QLowEnergyController::createCentral(
            QBluetoothDeviceInfo(QBluetoothAddress(u"00:AA:01:01:00:01"_s), u"Varda"_s, 0)));
        connect(m_controller.get(), &QLowEnergyController::connected, m_controller.get(),
                &QLowEnergyController::discoverServices);
        connect(m_controller.get(), &QLowEnergyController::discoveryFinished, this,
                &Bare::onServices);
        m_controller->connectToDevice();
    }

private:
    void onServices()
    {
        m_service.reset(m_controller->createServiceObject(QBluetoothUuid(kService)));
        connect(m_service.get(), &QLowEnergyService::stateChanged, this, [this](auto state) {
            if (state == QLowEnergyService::RemoteServiceDiscovered)
                subscribe();
        });
        connect(m_service.get(), &QLowEnergyService::descriptorWritten, this, [this] {
            m_service->writeCharacteristic(m_service->characteristic(QBluetoothUuid(kData)),
                                           QByteArray::fromHex(kRequest),
                                           QLowEnergyService::WriteWithoutResponse);
        });
        connect(m_service.get(), &QLowEnergyService::characteristicChanged, this, [this] {
            if (--m_left == 0)
                QCoreApplication::quit();
        });
        m_service->discoverDetails();
    }
    void subscribe()
    {
        const auto data = m_service->characteristic(QBluetoothUuid(kData));
        m_service->writeDescriptor(
            data.descriptor(QBluetoothUuid::DescriptorType::ClientCharacteristicConfiguration),
            QByteArray::fromHex("0100"));
    }

    std::unique_ptr<QLowEnergyController> m_controller;
    std::unique_ptr<QLowEnergyService> m_service;
    int m_left;
};

void leave(bool good)
{
    QCoreApplication::exit(good ? 0 : 1);
}

/** Reads the samples of dive 1. */
void readSamples(VardaSession &session)
{
    QObject::connect(&session, &VardaSession::connectControllerStatus, &session, [&](auto status) {
        if (status == ConnectControllerStatus::Connected)
            session.startGetDiveSamples(1);
        else
            leave(false);
    });
    QObject::connect(&session, &VardaSession::endCommand, &session,
                     [&] { leave(!session.diveSamples().isEmpty()); });
    QObject::connect(&session, &VardaSession::exchangeError, &session, [] { leave(false); });
    session.connectTo(simulated());
}

/** Reads the clock so often. */
void readClocks(VardaSession &session, int &left)
{
    const auto next = [&] {
        if (--left < 0)
            leave(true);
        else
            session.startCommand(TidemarCommand::Time);
    };
    QObject::connect(&session, &VardaSession::connectControllerStatus, &session, next);
    QObject::connect(&session, &VardaSession::endCommand, &session, next);
    QObject::connect(&session, &VardaSession::exchangeError, &session, [] { leave(false); });
    session.connectTo(simulated());
}

/** The same with jobs. */
void readClocks(VardaComputer &computer, int left)
{
    if (left == 0) {
        leave(true);
        return;
    }
    const auto *const job = computer.readClock();
    QObject::connect(job, &VardaJob::finished, &computer, [&computer, job, left] {
        if (job->error())
            leave(false);
        else
            readClocks(computer, left - 1);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const QString what = words.value(1);
    int count = words.value(2).toInt();

    VardaSession session;
    VardaComputer computer;
    std::unique_ptr<Bare> bare;
    if (what == "samples"_L1) {
        readSamples(session);
    } else if (what == "bare"_L1) {
        bare = std::make_unique<Bare>(count);
    } else if (what == "session"_L1) {
        readClocks(session, count);
    } else if (what == "jobs"_L1) {
        computer.setDevice(simulated());
        readClocks(computer, count);
    } else {
        std::fprintf(stderr, "usage: %s samples|bare|session|jobs COUNT\n", argv[0]);
        return 2;
    }
    return QCoreApplication::exec();
}
