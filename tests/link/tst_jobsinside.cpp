// SPDX-License-Identifier: MIT
#include "images.h"
#include "jobtest.h"

using namespace Qt::StringLiterals;

using Job = void (*)(VardaSession &session);
Q_DECLARE_METATYPE(Job)

/**
 * What an application does from inside a signal of a job: delete the session, let the computer go,
 * start the next job. Each function is one such deed; its rows are the jobs and their signals.
 */
class TestJobsInside : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void deletion_data() { rows(); }
    void deletion();
    void disconnection_data() { rows(); }
    void disconnection();
    void nextJob_data() { rows(); }
    void nextJob();

private:
    static void rows();
    /** Runs this row's job, does the deed at its signal, notes what comes from there on. */
    void run(const std::function<void()> &deed);

    QStringList m_rest;
    qsizetype m_framesBefore = 0;
};

namespace {

// Answers of many frames go on behind their end, so that a deed is done in the middle of them.
constexpr auto kHealthy = R"("responses":{"Logbook":["0100","","0200",""],
    "Fullsamples":["000000000000","","000000000000",""],"SyslogBin":["00","","00",""],
    "BatteryInformation":["0000000000000000","","0000000000000000",""],
    "LayoutGet":["00","","00",""],"LayoutActiveGet":["00"],"LayoutAdd":["01"],
    "LayoutRemove":["01"],"Set_owner":["01"],"Set_sensors":["00"],"EraseDives":["00"],
    "GetGases":["00"],"Begin_program":["01"],"Program":["01"],"End_program":["01"],
    "BeginUpdate":["01"],"ProgramUpdate":["01"],"EndUpdate":["01"],"Close":["01"],
    "Time":["2a"]})";
constexpr auto kRefusing = R"("responses":{"LayoutAdd":["00"],"LayoutRemove":["00"],
    "Set_owner":["00"],"MarloSet":["00"],"Begin_program":["00"],"BeginUpdate":["00"],
    "Time":["2a"]})";
constexpr auto kRefusingBlock = R"("responses":{"Begin_program":["01"],"Program":["00"],
    "BeginUpdate":["01"],"ProgramUpdate":["01"],"EndUpdate":["00"],"Time":["2a"]})";

} // namespace

void TestJobsInside::rows()
{
    QTest::addColumn<QByteArray>("computer");
    QTest::addColumn<Job>("job");
    QTest::addColumn<QString>("entry");
    const auto add = [](const char *computer, Job job, const QString &entry) {
        QTest::newRow(qPrintable(entry)) << QByteArray(computer) << job << entry;
    };
    const auto end = [&](const char *command, Job job) {
        add(kHealthy, job, u"endCommand "_s + QLatin1String(command));
    };
    const auto error = [&](const char *computer, const char *what, Job job) {
        add(computer, job, u"exchangeError "_s + QLatin1String(what));
    };
    constexpr Job kUpload = [](auto &s) { s.uploadFirmware(image(200), u"a"_s, false); };
    constexpr Job kUpdate = [](auto &s) {
        s.uploadFirmware(image(544, kBootloaderHeader), u"a"_s, false);
    };

    end("Logbook", [](auto &s) { s.startGetLogbook({}); });
    end("Fullsamples", [](auto &s) { s.startGetDiveSamples(1); });
    end("SyslogBin", [](auto &s) { s.startCommand(TidemarCommand::SyslogBin); });
    end("LayoutGet", [](auto &s) { s.startLayoutGet(0); });
    end("BatteryInformation", [](auto &s) { s.startGetBatteryInformation(); });
    end("GetGases", [](auto &s) { s.startGetGases(0); });
    end("LayoutActiveGet", [](auto &s) { s.startLayoutActiveGet(); });
    end("LayoutAdd", [](auto &s) { s.startLayoutAdd("x"); });
    end("LayoutRemove", [](auto &s) { s.startLayoutRemove(0); });
    end("Set_owner", [](auto &s) { s.setOwner(u"Zoë"_s); });
    end("Set_sensors", [](auto &s) { s.startSetPressure(1013); });
    end("DeleteLastDive", [](auto &s) { s.startCommand(TidemarCommand::EraseDives); });
    end("End_program", kUpload);
    add(kHealthy, kUpload, u"uploadFirmwareProgress 128 64"_s);
    add(kHealthy, kUpload, u"uploadFirmwareProgress 256 128"_s);
    add(kHealthy, kUpdate, u"uploadFirmwareProgress 0 100"_s);
    error(kRefusing, "LayoutAdd GenericError", [](auto &s) { s.startLayoutAdd("x"); });
    error(kRefusing, "LayoutRemove GenericError", [](auto &s) { s.startLayoutRemove(0); });
    error(kRefusing, "Set_owner SetOwnerError", [](auto &s) { s.setOwner(u"Zoë"_s); });
    error(kRefusing, "MarloSet GenericError", [](auto &s) { s.startMarloSettings({}); });
    error(kRefusing, "Begin_program BeginProgramError", kUpload);
    error(kRefusing, "BeginUpdate BeginProgramError", kUpdate);
    error(kRefusingBlock, "Program ProgramError", kUpload);
    error(kRefusingBlock, "End_program EndProgramError", kUpdate);
}

void TestJobsInside::run(const std::function<void()> &deed)
{
    QFETCH(const QByteArray, computer);
    QFETCH(const Job, job);
    QFETCH(const QString, entry);

    // One notification has it all, so that the rest is there when the deed is done.
    CONNECT(connectTo(R"("merge":true,)" + computer));
    m_rest.clear();
    bool done = false;
    m_log.react = [&, this](const QString &each) {
        if (done) {
            m_rest.append(each);
        } else if (each == entry) {
            done = true;
            Simulator::settle();
            m_framesBefore = sent().size();
            deed();
        }
    };
    job(*m_session);
    QTRY_VERIFY_WITH_TIMEOUT(done, 40'000);
    m_log.react = [this](const QString &each) { m_rest.append(each); };
}

void TestJobsInside::deletion()
{
    run([this] { m_session.reset(); });
    QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    Simulator::settle();
    QCOMPARE(m_rest, QStringList());
    QCOMPARE(sent().size(), m_framesBefore);
}

void TestJobsInside::disconnection()
{
    QFETCH(const QString, entry);
    run([this] { m_session->controllerDisconnect(); });
    QTRY_VERIFY_WITH_TIMEOUT(!Simulator::state()["connected"_L1].toBool(), 20'000);
    Simulator::settle();
    QStringList expected{u"message Disconnect from device"_s, u"disconnectController"_s};
    // An upload that is complete is told to its end.
    if (entry == u"uploadFirmwareProgress 0 100"_s)
        expected += u"endCommand End_program"_s;
    QCOMPARE(m_rest, expected);
    QCOMPARE(sent().size(), m_framesBefore);
    m_log.react = nullptr;
    m_session->controllerConnect();
    QCOMPARE(m_log.entries().last(), u"NoController"_s);
}

void TestJobsInside::nextJob()
{
    QFETCH(const QString, entry);
    run([this] { m_session->startCommand(TidemarCommand::Time); });
    QVERIFY(m_log.await(u"endCommand Time"_s));
    QCOMPARE(m_session->computerTime(), 42);
    QStringList expected{u"endCommand Time"_s};
    // What has arrived already is told to its end.
    if (entry == u"endCommand Logbook"_s || entry == u"endCommand Fullsamples"_s
        || entry == u"endCommand SyslogBin"_s || entry == u"endCommand LayoutGet"_s
        || entry == u"endCommand BatteryInformation"_s)
        expected.prepend(entry);
    else if (entry == u"uploadFirmwareProgress 0 100"_s)
        expected.prepend(u"endCommand End_program"_s);
    QCOMPARE(m_rest, expected);
    // Nothing of the job before is sent any more.
    QCOMPARE(sent().sliced(m_framesBefore), QStringList(u"07"_s));
    m_log.react = nullptr;
}

QTEST_GUILESS_MAIN(TestJobsInside)
#include "tst_jobsinside.moc"
