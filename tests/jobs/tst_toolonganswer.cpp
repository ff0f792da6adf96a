// SPDX-License-Identifier: MIT
#include <QtBluetooth/qbluetoothuuid.h>
#include <QtBluetooth/qlowenergycharacteristic.h>
#include <QtBluetooth/qlowenergyservice.h>

#include <dlfcn.h>

#include <varda/vardacomputer.h>

#include "jobspy.h"
#include "linktest.h"

using namespace Qt::StringLiterals;

namespace {

/** The request for the log; it is the frame that closes the answer, too. */
const QByteArray kLog = QByteArray::fromHex("dcdc0100deec000002");
/** A line of the log that is as long as a frame may be, nearly. */
const QByteArray kFrame = QByteArray::fromHex("dcdc61ea243a000002") + QByteArray(59'999, 'a')
                          + '\n';

/** 70 MB of sound frames. */
void answer(QLowEnergyService *service)
{
    const QLowEnergyCharacteristic data = service->characteristic(
        QBluetoothUuid(u"49535343-1e4d-4bd9-ba61-23c647249616"_s));
    // Behind its first 4096 notifications an answer is limited by its bytes.
    for (qsizetype at = 0; at < kFrame.size(); at += 14)
        Q_EMIT service->characteristicChanged(data, kFrame.mid(at, 14));
    // No two are equal: such ones would have come twice.
    for (const int frames : {230, 231, 232, 233, 234})
        Q_EMIT service->characteristicChanged(data, kFrame.repeated(frames));
    Q_EMIT service->characteristicChanged(data, kLog);
}

/** Counts what is written to it. */
class Counter : public QIODevice
{
public:
    Counter() { open(QIODevice::WriteOnly); }
    qint64 bytes = 0;

protected:
    qint64 readData(char * /*data*/, qint64 /*most*/) override { return -1; }
    qint64 writeData(const char * /*data*/, qint64 size) override
    {
        bytes += size;
        return size;
    }
};

} // namespace

// The program's own definition comes before that of Qt Bluetooth, over which it would take minutes.
void QLowEnergyService::writeCharacteristic(const QLowEnergyCharacteristic &characteristic,
                                            const QByteArray &newValue, WriteMode mode)
{
    using Function = void (*)(QLowEnergyService *, const QLowEnergyCharacteristic &,
                              const QByteArray &, WriteMode);
    static const auto kOriginal = reinterpret_cast<Function>(::dlsym(
        RTLD_NEXT, "_ZN17QLowEnergyService19writeCharacteristicERK24QLowEnergyCharacteristic"
                   "RK10QByteArrayNS_9WriteModeE"));
    if (newValue == kLog)
        QMetaObject::invokeMethod(this, [this] { answer(this); }, Qt::QueuedConnection);
    else
        kOriginal(this, characteristic, newValue, mode);
}

/** An answer of more than 64 MB, of which a session keeps no more than the end. */
class TestTooLongAnswer : public LinkTest
{
    Q_OBJECT

private Q_SLOTS:
    void isNoResult();
};

void TestTooLongAnswer::isNoResult()
{
    LOAD(Simulator::loadKnown(R"("owner":"Ada")"));
    Counter trace;
    VardaComputer computer;
    computer.setTrace(&trace);
    auto *const job = computer.readLog();
    job->setRetries(0);
    JobSpy spy(job);
    QVERIFY(spy.wait(300'000));
    QCOMPARE(spy.error, VardaJob::Damaged);
    QCOMPARE(spy.reason, VardaJob::Reason::TooManyNotifications);
    QVERIFY(!spy.value.isValid());
    QVERIFY(trace.bytes > 139'000'000); // two digits a byte
    JobSpy next(computer.readOwner());
    ENDS_WELL(next);
    QCOMPARE(next.value.toString(), u"Ada"_s);
}

QTEST_MAIN(TestTooLongAnswer)
#include "tst_toolonganswer.moc"
