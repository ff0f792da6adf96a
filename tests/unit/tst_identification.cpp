// SPDX-License-Identifier: MIT
#include "payload.h"

#include <QtTest/qtest.h>

class TestIdentification : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void code_data();
    void code();
    void versions();
    void versionToString_data();
    void versionToString();
    void bootloaderVersion_data();
    void bootloaderVersion();
    void serialNumber_data();
    void serialNumber();
};

void TestIdentification::code_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<ComputerModel::ComputerModelIn>("model");
    QTest::addColumn<int>("recordVersion");
    QTest::addColumn<CurrentMode::CurrentModeIn>("mode");
    QTest::addColumn<bool>("namesBootloader");

    const auto row = [](int code, ComputerModel::ComputerModelIn model, int recordVersion,
                        CurrentMode::CurrentModeIn mode, bool namesBootloader) {
        QTest::addRow("%d", code) << code << model << recordVersion << mode << namesBootloader;
    };
    // Up to 10 the model is not told: the one before stays.
    row(0, ComputerModel::ThirdParty, 0, CurrentMode::Unknown, false);
    row(1, ComputerModel::ThirdParty, 1, CurrentMode::Normal, false);
    row(2, ComputerModel::ThirdParty, 2, CurrentMode::BootLoader, false);
    row(5, ComputerModel::ThirdParty, 5, CurrentMode::Unknown, false);
    row(10, ComputerModel::ThirdParty, 10, CurrentMode::Unknown, false);
    row(11, ComputerModel::Varda, 1, CurrentMode::Normal, false);
    row(12, ComputerModel::Varda, 2, CurrentMode::BootLoader, false);
    row(13, ComputerModel::Varda, 3, CurrentMode::Unknown, false);
    row(20, ComputerModel::Varda, 10, CurrentMode::Unknown, false);
    row(21, ComputerModel::Tidemar, 1, CurrentMode::Normal, true);
    row(22, ComputerModel::Tidemar, 2, CurrentMode::BootLoader, true);
    row(30, ComputerModel::Tidemar, 10, CurrentMode::Unknown, true);
    row(31, ComputerModel::VSKM, 1, CurrentMode::Normal, true);
    row(32, ComputerModel::VSKM, 2, CurrentMode::BootLoader, true);
    row(33, ComputerModel::VSKM, 3, CurrentMode::Unknown, true);
    row(255, ComputerModel::VSKM, 225, CurrentMode::Unknown, true);
}

void TestIdentification::code()
{
    QFETCH(const int, code);
    QFETCH(const bool, namesBootloader);

    VardaData data;
    data.computerModel = ComputerModel::ThirdParty;
    data.currentMode = CurrentMode::Normal;
    data.bootloaderVersion = 0x11223344;
    data.bootloaderVersionStr = QStringLiteral("as it was");
    VardaData::Payload payload = payloadOf("61030201 00 62060504");
    payload[5] = std::uint8_t(code);
    data.processIdentification(payload);

    QTEST(data.computerModel, "model");
    QTEST(int(data.recordVersion), "recordVersion");
    QTEST(data.currentMode, "mode");
    QCOMPARE(data.firmwareVersion, 0x01020361U);
    QCOMPARE(data.firmwareVersionStr, QStringLiteral("1.2.3.a"));
    QCOMPARE(data.bootloaderVersion, namesBootloader ? 0x04050662U : 0x11223344U);
    QCOMPARE(data.bootloaderVersionStr, QStringLiteral("as it was"));
}

// A code that tells no model leaves the model that an earlier one told, and what goes with it.
void TestIdentification::versions()
{
    VardaData data;
    data.processIdentification(payloadOf("61030201 1f 62060504"));
    QCOMPARE(data.computerModel, ComputerModel::VSKM);
    data.processIdentification(payloadOf("00000000 05 78563412"));
    QCOMPARE(data.computerModel, ComputerModel::VSKM);
    QCOMPARE(data.recordVersion, std::uint8_t(5));
    QCOMPARE(data.currentMode, CurrentMode::Unknown);
    QCOMPARE(data.firmwareVersion, 0U);
    QCOMPARE(data.firmwareVersionStr, QString::fromLatin1("0.0.0.\0", 7));
    QCOMPARE(data.bootloaderVersion, 0x12345678U);
}

void TestIdentification::versionToString_data()
{
    QTest::addColumn<uint>("version");
    QTest::addColumn<QString>("text");

    QTest::newRow("1.2.3.a") << 0x01020361U << QStringLiteral("1.2.3.a");
    QTest::newRow("no padding") << 0x0A006430U << QStringLiteral("10.0.100.0");
    QTest::newRow("zero ends in NUL") << 0U << QString::fromLatin1("0.0.0.\0", 7);
    QTest::newRow("largest") << 0xFFFFFFFFU << QStringLiteral("255.255.255.\u00FF");
}

void TestIdentification::versionToString()
{
    QFETCH(const uint, version);
    QTEST(VardaData::firmwareVersionToString(version), "text");
}

void TestIdentification::bootloaderVersion_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<uint>("version");
    QTest::addColumn<QString>("text");

    QTest::newRow("2.0.17.c") << QByteArray("63110002") << 0x02001163U
                              << QStringLiteral("2.0.17.c");
    QTest::newRow("zero") << QByteArray("00000000 61") << 0U << QStringLiteral("Unknown");
}

void TestIdentification::bootloaderVersion()
{
    QFETCH(const QByteArray, payload);
    VardaData data;
    data.bootloaderVersion = 0x11223344;
    data.firmwareVersion = 0x55667788;
    data.processBootloaderVersion(payloadOf(payload));
    QTEST(data.bootloaderVersion, "version");
    QTEST(data.bootloaderVersionStr, "text");
    QCOMPARE(data.firmwareVersion, 0x55667788U);
}

void TestIdentification::serialNumber_data()
{
    QTest::addColumn<int>("recordVersion");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QString>("text");

    QTest::newRow("version 0") << 0 << QByteArray("01 02 03 04 05 06 41")
                               << QStringLiteral("0605-0403-0201-A");
    QTest::newRow("version 0, lower case, padded")
        << 0 << QByteArray("0a ff 00 cd ab 7f 7a 99") << QStringLiteral("7fab-cd00-ff0a-z");
    QTest::newRow("version 0, a character beyond ASCII")
        << 0 << QByteArray("00 00 00 00 00 00 e9") << QStringLiteral("0000-0000-0000-\u00E9");
    QTest::newRow("version 1") << 1 << QByteArray("01 02 03 04 05 06 41 00 fe ca ad de")
                               << QStringLiteral("04030201-00410605-DEADCAFE");
    QTest::newRow("version 1, padded") << 1 << QByteArray("01000000 0a000000 00000000")
                                       << QStringLiteral("00000001-0000000A-00000000");
    QTest::newRow("version 255") << 255 << QByteArray("ffffffff 00000080 efbeadde")
                                 << QStringLiteral("FFFFFFFF-80000000-DEADBEEF");
}

void TestIdentification::serialNumber()
{
    QFETCH(const int, recordVersion);
    QFETCH(const QByteArray, payload);
    VardaData data;
    data.recordVersion = std::uint8_t(recordVersion);
    data.serialNumber = QStringLiteral("replaced");
    data.processSerialNumber(payloadOf(payload));
    QTEST(data.serialNumber, "text");
}

QTEST_APPLESS_MAIN(TestIdentification)
#include "tst_identification.moc"
