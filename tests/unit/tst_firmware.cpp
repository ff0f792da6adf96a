// SPDX-License-Identifier: MIT
#include <QtCore/qtemporarydir.h>
#include <QtTest/qsignalspy.h>
#include <QtTest/qtest.h>

#include <varda/vardasession.h>

// What an image is good for, as told before anything is sent: there is no link.
class TestFirmware : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void data_data();
    void data();
    void file();
    void noFile();
};

static QByteArray image(int size, const char *headerHex = "")
{
    const QByteArray header = QByteArray::fromHex(headerHex);
    return QByteArray(512, '\xAA') + header + QByteArray(size - 512 - header.size(), '\0');
}

// The computer is not known: both of its versions are 0.
void TestFirmware::data_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("forcedResult");

    const auto row = [](const char *name, const QByteArray &image, int result, int forcedResult) {
        QTest::newRow(name) << image << result << forcedResult;
    };
    row("empty", QByteArray(), 0, 0);
    row("one byte", QByteArray(1, 'x'), 1, 1);
    row("no word at 512", image(512), 512, 512);
    row("word 0", image(544), 544, 544);
    row("word 0, more than 65535 bytes", image(70000), 70000, 70000);
    row("word 1", image(544, "01000000"), -1, -1);
    row("word of another byte order", image(544, "deadbeef 00000000 05000000"), -1, -1);
    row("half a word", image(514, "efbe"), -1, -1);
    row("application, another version", image(544, "efbeadde 00000000 05000000"), -4, -4);
    row("application, the same version", image(544, "efbeadde 01000000 00000000"), -3, -4);
    row("application, no version left", image(516, "efbeadde"), -3, -4);
    row("bootloader, another version", image(544, "544f4f42 00000000 05000000"), 544, 544);
    row("bootloader, the same version", image(544, "544f4f42 01000000 00000000"), -2, 544);
    row("bootloader, no version left", image(516, "544f4f42"), -2, 516);
}

void TestFirmware::data()
{
    QFETCH(const QByteArray, image);
    const QString name = QStringLiteral("Tidemar.1.4.2.b.bin");
    VardaSession session;
    const QSignalSpy progress(&session, &VardaSession::uploadFirmwareProgress);
    const QSignalSpy failed(&session, &VardaSession::exchangeError);
    const QSignalSpy messages(&session, &VardaSession::messageChanged);
    QTEST(session.uploadFirmware(image, name, false), "result");
    QTEST(session.uploadFirmware(image, name, true), "forcedResult");
    QCOMPARE(progress.count() + failed.count() + messages.count(), 0);
    QCOMPARE(qint64(session.uploadElapsed().count()), qint64(0));
}

void TestFirmware::file()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Tidemar.1.4.2.b.bin"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(image(600, "544f4f42 01000000 00000000"));
    file.close();
    VardaSession session;
    QCOMPARE(session.uploadFirmware(path, false), -2);
    QCOMPARE(session.uploadFirmware(path, true), 600);
}

void TestFirmware::noFile()
{
    const QTemporaryDir folder;
    VardaSession session;
    QCOMPARE(session.uploadFirmware(folder.filePath(QStringLiteral("none.bin")), true), 0);
    QCOMPARE(session.uploadFirmware(folder.path(), true), 0);
    QCOMPARE(session.uploadFirmware(QString(), true), 0);
}

QTEST_GUILESS_MAIN(TestFirmware)
#include "tst_firmware.moc"
