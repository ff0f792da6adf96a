// SPDX-License-Identifier: MIT
#include <QtTest/qtest.h>

#include <varda/firmwareimage.h>

using Kind = FirmwareImage::Kind;
Q_DECLARE_METATYPE(Kind)

class TestFirmwareImage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void images_data();
    void images();
    void fileNames_data();
    void fileNames();
    void fileNameOfAnImageWithHeader();
    void header_data();
    void header();
    void errors_data();
    void errors();
    void defaults();
};

/** @param hex  bytes from byte 512 on; zeros behind them */
static QByteArray image(int size, const char *hex = "")
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    return QByteArray(512, '\xAA') + bytes + QByteArray(size - 512 - bytes.size(), '\0');
}

void TestFirmwareImage::images_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<quint32>("version");
    QTest::addColumn<QString>("versionStr");
    QTest::addColumn<int>("size");
    QTest::addColumn<quint16>("checksum");

    const auto row = [](const char *name, const QByteArray &data, Kind kind, quint32 version,
                        const QString &text, int size, quint16 checksum) {
        QTest::newRow(name) << data << kind << version << text << size << checksum;
    };
    const QString byFile = QStringLiteral("1.4.2.b");
    row("empty", {}, Kind::Empty, 0, {}, 0, 0);
    row("nine bytes", "123456789", Kind::WithoutHeader, 0x01040262, byFile, 9, 0xE5CC);
    row("ends at 512", image(512), Kind::WithoutHeader, 0x01040262, byFile, 512, 0x7A23);
    row("word 0", image(544), Kind::WithoutHeader, 0x01040262, byFile, 544, 0x638D);
    row("more than 65535 bytes", image(70000), Kind::WithoutHeader, 0x01040262, byFile, 70000,
        0xBC46);
    row("firmware",
        image(544, "efbeadde 11111111 62020401 33333333 44444444 55555555 66666666 77777777"),
        Kind::Firmware, 0x01040262, QStringLiteral("1.4.2.b"), 544, 0x516E);
    row("firmware, version with a zero", image(544, "efbeadde 00000000 00050403"), Kind::Firmware,
        0x03040500, QStringLiteral("3.4.5.") + QChar(0), 544, 0xBFC0);
    row("firmware, cut behind its first word", image(516, "efbeadde"), Kind::Firmware, 0,
        QStringLiteral("0.0.0.") + QChar(0), 516, 0x0123);
    row("bootloader", image(600, "544f4f42 00000000 61030001"), Kind::Bootloader, 0x01000361,
        QStringLiteral("1.0.3.a"), 600, 0xBDAE);
    row("word 1", image(544, "01000000"), Kind::Unknown, 0, {}, 544, 0x3ACB);
    row("word of another byte order", image(544, "deadbeef"), Kind::Unknown, 0, {}, 544, 0x18D1);
    row("half a word", image(514, "efbe"), Kind::Unknown, 0, {}, 514, 0xB50A);
}

void TestFirmwareImage::images()
{
    QFETCH(const QByteArray, data);
    const auto image = FirmwareImage::fromData(data, QStringLiteral("Tidemar.1.4.2.b.bin"));
    QTEST(image.kind, "kind");
    QTEST(image.version, "version");
    QTEST(image.versionStr, "versionStr");
    QTEST(int(image.size), "size");
    QTEST(image.checksum, "checksum");
}

void TestFirmwareImage::fileNames_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QString>("name");
    QTest::addColumn<quint32>("version");

    const auto row = [](const char *fileName, const char *name, quint32 version) {
        QTest::newRow(*fileName ? fileName : "none")
            << QString::fromUtf8(fileName) << QString::fromUtf8(name) << version;
    };
    row("Tidemar.1.4.2.b.bin", "Tidemar", 0x01040262);
    row("Tidemar.1.4.2.b", "Tidemar", 0x01040262);
    row("Tidemar.1.4.2.beta.bin", "Tidemar", 0x01040262);
    row("Tidemar.1.4.2", "Tidemar", 0x01040200);
    row("Tidemar.12.34.56.z.bin", "Tidemar", 0x0C22387A);
    row("Tidemar.x.4.2.b.bin", "Tidemar", 0x00040262);
    row("Tidemar.bin", "Tidemar", 0);
    row("Tidemar", "Tidemar", 0);
    row("", "", 0);
    row(".1.2.3.c", "", 0x01020363);
    row("Two words.0.0.1.0.bin", "Two words", 0x00000130);
    // The first number may be above 255, or below 0: what is above the byte is lost or shifted in.
    row("V.256.1.0.a", "V", 0x00010061);
    row("V.0.256.0.a", "V", 0x01000061);
    row("V.0.0.-1.a", "V", 0xFFFFFF61);
    // Latin-1 above 0x7F takes its sign along; the euro sign is not in Latin-1.
    row("V.1.2.3.é", "V", 0xFFFFFFE9);
    row("V.1.2.3.€", "V", 0x01020300);
}

void TestFirmwareImage::fileNames()
{
    QFETCH(const QString, fileName);
    const auto image = FirmwareImage::fromData("x", fileName);
    QTEST(image.name, "name");
    QTEST(image.version, "version");
}

void TestFirmwareImage::fileNameOfAnImageWithHeader()
{
    const auto image = FirmwareImage::fromData(::image(544, "efbeadde 00000000 62020401"),
                                               QStringLiteral("Tidemar.9.9.9.z.bin"));
    QCOMPARE(image.name, QString());
    QCOMPARE(image.version, 0x01040262U);
}

void TestFirmwareImage::header_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("header");
    QTest::newRow("none") << image(544) << QByteArray();
    QTest::newRow("unknown") << image(544, "01000000") << QByteArray();
    QTest::newRow("whole") << image(600, "efbeadde 11111111 62020401 33333333 44444444 55555555"
                                         " 66666666 77777777 88888888")
                           << QByteArray::fromHex("efbeadde 11111111 62020401 33333333 44444444"
                                                  " 55555555 66666666 77777777");
    QTest::newRow("cut") << image(518, "544f4f42 1111")
                         << QByteArray::fromHex("544f4f42 11110000 00000000 00000000 00000000"
                                                " 00000000 00000000 00000000");
}

void TestFirmwareImage::header()
{
    QFETCH(const QByteArray, data);
    QFETCH(const QByteArray, header);
    const auto image = FirmwareImage::fromData(data, QStringLiteral("V.1.2.3.a.bin"));
    QCOMPARE(image.header, header);
    QCOMPARE(image.hasHeader(), header.size() == 32);
    QCOMPARE(image.canResume(), header.size() == 32);
}

void TestFirmwareImage::errors_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("The image is empty.");
    QTest::newRow("unknown") << image(544, "01000000")
                             << QStringLiteral("Unknown image type (word at byte 512).");
    QTest::newRow("without header") << image(544) << QString();
    QTest::newRow("firmware") << image(544, "efbeadde") << QString();
    QTest::newRow("bootloader") << image(544, "544f4f42") << QString();
}

void TestFirmwareImage::errors()
{
    QFETCH(const QByteArray, data);
    QFETCH(const QString, error);
    const auto image = FirmwareImage::fromData(data, QString());
    QCOMPARE(image.errorString(), error);
    QCOMPARE(image.isValid(), error.isEmpty());
}

void TestFirmwareImage::defaults()
{
    const FirmwareImage image;
    QCOMPARE(image.kind, Kind::Empty);
    QVERIFY(!image.isValid() && !image.hasHeader() && !image.canResume());
    QVERIFY(image.version == 0 && image.size == 0 && image.checksum == 0);
}

QTEST_GUILESS_MAIN(TestFirmwareImage)
#include "tst_firmwareimage.moc"
