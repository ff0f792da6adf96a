// SPDX-License-Identifier: MIT
#include <QtCore/qendian.h>
#include <QtTest/qtest.h>

#include <algorithm>
#include <functional>

#include "jobs/trace/redactor_p.h"
#include "protocol/crc16_p.h"
#include "protocol/frame_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kSecrets = 200;

/** No two of its neighbours are small letters, which is all that stands in for it. */
QByteArray secret(int number)
{
    return "S#" + QByteArray::number(1000 + number * 37) + "-Ä/" + QByteArray::number(number * 7)
           + "Z";
}

QByteArray frame(TidemarCommand::TidemarCommandIn command, const QByteArray &payload)
{
    return Frame::buildFrame({command, payload});
}

/** An answer with a secret in it, of each kind that has room for one. */
using Answer = std::function<QByteArray(const QByteArray &secret)>;

QByteArray configuration(const QByteArray &start, int owner, const QByteArray &text, int size)
{
    QByteArray payload = start + QByteArray(size - start.size(), '\x21');
    return payload.replace(owner, 32, text.leftJustified(32, '\0'));
}

const QList<std::pair<const char *, Answer>> &answers()
{
    using namespace TidemarCommand;
    static const QList<std::pair<const char *, Answer>> kList = {
        {"owner", [](const QByteArray &s) { return frame(Owner, s); }},
        {"owner with rest",
         [](const QByteArray &s) { return frame(Owner, QByteArray("Al\0", 3) + s); }},
        {"serial number", [](const QByteArray &s) { return frame(Serialnumber, s); }},
        {"layout list",
         [](const QByteArray &s) {
             return frame(LayoutList, QByteArray("\x01\x02", 2) + s) + frame(LayoutList, {});
         }},
        {"layout",
         [](const QByteArray &s) { return frame(LayoutGet, s + '\0') + frame(LayoutGet, {}); }},
        {"log",
         [](const QByteArray &s) {
             return frame(Syslog, "2024-01-01 " + s) + frame(Syslog, s) + frame(Syslog, {});
         }},
        {"configuration of a Varda",
         [](const QByteArray &s) {
             return frame(Computer, configuration(QByteArray("\x0d\x01\x01", 3), 56, s, 160));
         }},
        {"configuration of a Tidemar",
         [](const QByteArray &s) {
             return frame(Computer_new, configuration(QByteArray("\x0c\x01\x02", 3), 113, s, 240));
         }},
        {"configuration of a VSKM",
         [](const QByteArray &s) {
             return frame(Computer_new, configuration(QByteArray("\x15\x01\x03", 3), 187, s, 300));
         }},
        {"longer identification",
         [](const QByteArray &s) { return frame(Identification, QByteArray(9, '\1') + s); }},
        {"unknown command", [](const QByteArray &s) { return frame(TidemarCommandIn(99), s); }},
        {"no frame", [](const QByteArray &s) { return s + s; }},
        {"wrong checksum", [](const QByteArray &s) { return frame(Time, s).replace(4, 2, "zz"); }},
    };
    return kList;
}

QList<QByteArray> inPieces(const QByteArray &bytes, qsizetype size)
{
    QList<QByteArray> pieces;
    for (qsizetype at = 0; at < bytes.size(); at += size)
        pieces.append(bytes.mid(at, size));
    return pieces;
}

QByteArray reversed(QByteArray bytes)
{
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

/** Any five bytes of it in a row, as they are or the other way round. */
bool leaks(const QByteArray &bytes, const QByteArray &secret)
{
    constexpr int kWindow = 5;
    for (qsizetype at = 0; at + kWindow <= secret.size(); ++at) {
        const QByteArray part = secret.mid(at, kWindow);
        if (bytes.contains(part) || bytes.contains(reversed(part)))
            return true;
    }
    return false;
}

} // namespace

/** What stands in a trace in the place of what is private. */
class TestRedactor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cut_data();
    void cut();
    void requests();
    void soundFrames();
    void divesStay();
    void damagedLooksTheSame();
    void equalAndDifferent();
    void names();
    void addresses();
};

void TestRedactor::cut_data()
{
    QTest::addColumn<int>("answer");
    for (int i = 0; i < answers().size(); ++i)
        QTest::newRow(answers()[i].first) << i;
}

void TestRedactor::cut()
{
    QFETCH(const int, answer);
    const Redactor redactor;
    for (int number = 0; number < kSecrets; ++number) {
        const QByteArray hidden = secret(number);
        const QByteArray whole = answers()[answer].second(hidden);
        const qsizetype first = number == 0 ? 1 : number % whole.size() + 1;
        const qsizetype last = number == 0 ? whole.size() : first;
        for (qsizetype size = first; size <= last; ++size) {
            const QList<QByteArray> pieces = inPieces(whole, size);
            const auto check = [&](const QList<QByteArray> &sent) {
                const QList<QByteArray> other = redactor.answer(sent);
                bool ok = other.size() == sent.size() && !leaks(other.join(), hidden);
                for (qsizetype i = 0; ok && i < sent.size(); ++i)
                    ok = other[i].size() == sent[i].size();
                return ok;
            };
            QVERIFY(check(pieces));
            // Whatever gets lost or comes twice
            const qsizetype lost = number % pieces.size();
            QVERIFY(check(pieces.first(lost)));
            QVERIFY(check(pieces.sliced(lost)));
            QVERIFY(check(pieces.first(lost) + pieces.sliced(lost + 1)));
            QVERIFY(check(pieces.first(lost + 1) + pieces.sliced(lost)));
            QVERIFY(check(pieces + pieces));
            QVERIFY(check(QList<QByteArray>{"\xDC"} + pieces));
        }
    }
}

void TestRedactor::requests()
{
    using namespace TidemarCommand;
    const Redactor redactor;
    for (int number = 0; number < kSecrets; ++number) {
        const QByteArray hidden = secret(number);
        for (const QByteArray &sent :
             {frame(Set_owner, hidden), frame(LayoutAdd, '\3' + hidden),
              frame(Set_serialnumber, hidden), frame(Set_computer, hidden), hidden}) {
            const QByteArray other = redactor.request(sent);
            QCOMPARE(other.size(), sent.size());
            QVERIFY(!leaks(other, hidden));
        }
    }
    const QByteArray samples = QByteArray::fromHex("dcdc03001234000014")
                               + QByteArray("\x0c\x00", 2);
    const auto harmless = frame(Fullsamples, QByteArray::fromHex("0c00"));
    QCOMPARE(redactor.request(harmless), harmless);
    QCOMPARE(redactor.request(samples).size(), samples.size());
}

void TestRedactor::soundFrames()
{
    const Redactor redactor;
    for (const auto &[name, answer] : answers().first(11)) {
        const QByteArray other = redactor.answer({answer(secret(3))}).join();
        QByteArrayView rest(other);
        while (Frame::startsFrame(rest)) {
            const auto [length, crc] = Frame::parseHeader(rest);
            QCOMPARE(Crc16::computeCrc(rest.sliced(8, length)), crc);
            rest = rest.sliced(8 + length);
        }
        QVERIFY2(rest.isEmpty(), name);
    }
}

void TestRedactor::divesStay()
{
    using namespace TidemarCommand;
    const Redactor redactor;
    const QByteArray dives = frame(Logbook, "a dive's header") + frame(Logbook, {});
    QCOMPARE(redactor.answer(inPieces(dives, 7)), inPieces(dives, 7));
    for (const auto command : {Time, Fullsamples, Diver, GetGases, BatteryInformation, SyslogBin}) {
        const QByteArray answer = frame(command, "12345678");
        QCOMPARE(redactor.answer({answer}), QList<QByteArray>{answer});
    }
    const QByteArray settings = configuration(QByteArray("\x0d\x01\x01", 3), 56, "Ada", 160);
    QByteArray other = redactor.answer({frame(Computer, settings)}).join().sliced(9);
    QCOMPARE(other.mid(56, 3).size(), 3);
    QVERIFY(other.mid(56, 3) != "Ada");
    QCOMPARE(other.mid(59, 29), QByteArray(29, '\0'));
    QCOMPARE(other.replace(56, 3, "Ada"), settings);
    // One that ends before the owner has nothing to hide.
    const QByteArray cut = frame(Computer, settings.first(40));
    QCOMPARE(redactor.answer({cut}), QList<QByteArray>{cut});
}

void TestRedactor::damagedLooksTheSame()
{
    const Redactor redactor;
    const QByteArray whole = frame(TidemarCommand::Owner, "Ada Lindqvist");
    // Its length and its code show what it was meant to be, and so that the end of it is missing.
    const QByteArray cut = redactor.answer({whole.first(15)}).join();
    QCOMPARE(cut.first(4), whole.first(4));
    QCOMPARE(cut[8], whole[8]);
    QVERIFY(!cut.contains("Ada"));
    // What came twice comes twice.
    const QList<QByteArray> twice = redactor.answer({"xyz", "Ada Lindqvist", "Ada Lindqvist"});
    QCOMPARE(twice[1], twice[2]);
    QVERIFY(twice[0] != twice[1].first(3));
}

void TestRedactor::equalAndDifferent()
{
    using namespace TidemarCommand;
    const Redactor redactor;
    const QByteArray written = redactor.request(frame(Set_owner, "Ada Lindqvist")).sliced(9);
    QCOMPARE(redactor.answer({frame(Owner, "Ada Lindqvist")}).join().sliced(9), written);
    QVERIFY(redactor.answer({frame(Owner, "Ada Lindqvisu")}).join().sliced(9) != written);
    QVERIFY(Redactor().request(frame(Set_owner, "Ada Lindqvist")).sliced(9) != written);
}

void TestRedactor::names()
{
    const Redactor redactor;
    QCOMPARE(redactor.name(u"Varda"_s), u"Varda"_s);
    QCOMPARE(redactor.name(u"Tidemar"_s), u"Tidemar"_s);
    const QString numbered = redactor.name(u"VSK-0042"_s);
    QVERIFY(numbered.startsWith(u"VSK-"_s));
    QCOMPARE(numbered.size(), 8);
    QVERIFY(!numbered.contains(u"0042"_s));
    QVERIFY(redactor.name(u"RN4871-1234"_s).startsWith(u"RN4871"_s));
    QCOMPARE(redactor.name(u"Zoë"_s).toUtf8().size(), 4);
    QVERIFY(redactor.name(u"Zoë's"_s) != u"Zoë's"_s);
    QCOMPARE(redactor.name(QString()), QString());
}

void TestRedactor::addresses()
{
    const Redactor redactor;
    const QString other = redactor.address(u"00:1A:7D:DA:71:13"_s);
    static const QRegularExpression kForm(u"^([0-9A-F]{2}:){5}[0-9A-F]{2}$"_s);
    QVERIFY(kForm.match(other).hasMatch());
    QVERIFY(other != u"00:1A:7D:DA:71:13"_s);
    QCOMPARE(redactor.address(u"00:1a:7d:da:71:13"_s), other);
    QCOMPARE(redactor.address(u"{6f1b52b0-0a3c-4c11-9d2e-0123456789ab}"_s).size(), 38);
}

QTEST_GUILESS_MAIN(TestRedactor)
#include "tst_redactor.moc"
