// SPDX-License-Identifier: MIT
#include "jobtest.h"

using namespace Qt::StringLiterals;

namespace {

const QString kAdded = u"endCommand LayoutAdd"_s;
const QString kNotAdded = u"exchangeError LayoutAdd GenericError"_s;

/** Every byte differs from its neighbours, and from the one a chunk further. */
QByteArray blob(int size)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(i % 251);
    return bytes;
}

QString wire(const char *flags, const QByteArray &bytes)
{
    return u"26"_s + QLatin1String(flags) + QString::fromLatin1(bytes.toHex());
}

} // namespace

/** Screen layouts: the list, reading one, writing one in chunks, and which are in use. */
class TestScreenLayouts : public JobTest
{
    Q_OBJECT

private Q_SLOTS:
    void list();
    void longName();
    void reading();
    void inUse();
    void writing_data();
    void writing();
    void refusal_data();
    void refusal();
    void beginningAnew();
    void shortAnswers_data();
    void shortAnswers();
};

void TestScreenLayouts::list()
{
    CONNECT(connectToAnswers(
        answer("LayoutList", {"00 01 4669727374", "05", "0603", "ff80 e9b5004180", ""})));
    QVERIFY(m_session->layouts().isEmpty());
    m_session->startLayoutList();
    QVERIFY(m_log.await(u"endCommand LayoutList"_s));
    QCOMPARE(m_log.take(), QStringList(u"endCommand LayoutList"_s));
    const QList<LayoutEntry> layouts = m_session->layouts();
    QCOMPARE(layouts.size(), 4);
    QCOMPARE(layouts[0].first, 0);
    QCOMPARE(layouts[0].second, 1);
    QCOMPARE(layouts[0].name, u"First"_s);
    QCOMPARE(layouts[1].first, 5);
    QCOMPARE(layouts[1].second, 0);
    QCOMPARE(layouts[1].name, QString());
    QCOMPARE(layouts[2].first, 6);
    QCOMPARE(layouts[2].second, 3);
    QCOMPARE(layouts[2].name, QString());
    QCOMPARE(layouts[3].first, 255);
    QCOMPARE(layouts[3].second, 128);
    QCOMPARE(layouts[3].name, u"éµ\0A\u0080"_s);

    // The job begins a new list; the bare command goes on with the old one.
    m_session->startLayoutList();
    QVERIFY(m_session->layouts().isEmpty());
    QVERIFY(m_log.await(u"endCommand LayoutList"_s));
    QCOMPARE(m_session->layouts().size(), 4);
    m_session->startCommand(TidemarCommand::LayoutList);
    QVERIFY(m_log.await(u"endCommand LayoutList"_s, 2));
    QCOMPARE(m_session->layouts().size(), 8);
}

void TestScreenLayouts::longName()
{
    CONNECT(connectToAnswers(answer("LayoutList", {"0102" + QByteArray("61").repeated(598), ""})));
    m_session->startLayoutList();
    QVERIFY(m_log.await(u"endCommand LayoutList"_s));
    QCOMPARE(m_session->layouts().first().name, QString(598, u'a'));
}

// A layout is bytes, whatever they are, and not cut where other answers are.
void TestScreenLayouts::reading()
{
    const QByteArray first = blob(600);
    CONNECT(connectToAnswers(answer("LayoutGet", {first.toHex(), "00", "dcdc0100", ""})));
    m_session->startLayoutGet(3);
    QVERIFY(m_log.await(u"endCommand LayoutGet"_s));
    QCOMPARE(m_log.take(), QStringList(u"endCommand LayoutGet"_s));
    QCOMPARE(m_session->layoutBlob().size(), 605);
    QCOMPARE(m_session->layoutBlob().first(600), first);
    QCOMPARE(m_session->layoutBlob().last(5).toHex(), "00dcdc0100");
    QCOMPARE(sent(), QStringList(u"2503"_s));

    m_session->startLayoutGet(4);
    QVERIFY(m_session->layoutBlob().isEmpty());
    QVERIFY(m_log.await(u"endCommand LayoutGet"_s));
    QCOMPARE(m_session->layoutBlob().size(), 605);
}

// An answer sets as many as it names; the others stay as they were.
void TestScreenLayouts::inUse()
{
    CONNECT(connectTo(R"("faults":[{"step":"answer","kind":"silent"}])"));
    using InUse = std::array<int8_t, 5>;
    const auto answered = [this](const char *frame) {
        m_session->startLayoutActiveGet();
        Simulator::notify(QByteArray::fromHex(frame));
        if (!m_log.await(u"endCommand LayoutActiveGet"_s))
            return InUse{99};
        m_log.take();
        return m_session->activeLayouts();
    };
    QCOMPARE(m_session->activeLayouts(), (InUse{-1, -1, -1, -1, -1}));
    QCOMPARE(answered("dcdc0100d779000029"), (InUse{-1, -1, -1, -1, -1}));
    QCOMPARE(answered("dcdc0300281a0000290102"), (InUse{1, 2, -1, -1, -1}));
    QCOMPARE(answered("dcdc0a00ec16000029090807060504030201"), (InUse{9, 8, 7, 6, 5}));
    QCOMPARE(answered("dcdc0600d4e00000290001ff0304"), (InUse{0, 1, -1, 3, 4}));
    QCOMPARE(answered("dcdc0300281a0000290102"), (InUse{1, 2, -1, 3, 4}));
}

void TestScreenLayouts::writing_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<QStringList>("chunks");
    const QByteArray large = blob(384);
    QTest::newRow("nothing") << QByteArray() << QStringList(u"2603"_s);
    QTest::newRow("one byte") << QByteArray("\xff") << QStringList(u"2603ff"_s);
    QTest::newRow("as much as one chunk holds")
        << large.first(127) << QStringList(wire("03", large.first(127)));
    QTest::newRow("one byte more")
        << large.first(128) << QStringList({wire("01", large.first(127)), u"26027f"_s});
    QTest::newRow("two full chunks")
        << large.first(254)
        << QStringList({wire("01", large.first(127)), wire("02", large.sliced(127, 127))});
    QTest::newRow("three times the frame")
        << large
        << QStringList({wire("01", large.first(127)), wire("00", large.sliced(127, 127)),
                        wire("00", large.sliced(254, 127)), wire("02", large.sliced(381, 3))});
}

void TestScreenLayouts::writing()
{
    QFETCH(const QByteArray, layout);
    QFETCH(const QStringList, chunks);
    CONNECT(connectToAnswers(answer("LayoutAdd", {"01"})));
    m_session->startLayoutAdd(layout);
    QVERIFY(!m_session->layoutCommandSuccess());
    QVERIFY(m_log.await(kAdded));
    QVERIFY(m_session->layoutCommandSuccess());
    Simulator::settle();
    QCOMPARE(m_log.take(), QStringList(kAdded));
    QCOMPARE(sent(), chunks);
}

void TestScreenLayouts::refusal_data()
{
    QTest::addColumn<int>("chunk");
    QTest::newRow("the first") << 1;
    QTest::newRow("one in the middle") << 2;
    QTest::newRow("the last") << 4;
}

void TestScreenLayouts::refusal()
{
    QFETCH(const int, chunk);
    CONNECT(connectTo(R"("responses":{"LayoutAdd":["01"],"Time":["0000000000000000"]},
        "faults":[{"step":"answer","command":"LayoutAdd","kind":"refuse","nth":)"
                      + QByteArray::number(chunk) + "}]"));
    m_session->startLayoutAdd(blob(384));
    QVERIFY(m_log.await(kNotAdded));
    QVERIFY(!m_session->layoutCommandSuccess());
    // What was begun is not gone on with, not even when the computer changes its mind.
    Simulator::notify(QByteArray::fromHex("dcdc0200a13800002601"));
    QVERIFY(m_log.await(kAdded));
    Simulator::settle();
    QCOMPARE(sent().size(), chunk);
    QCOMPARE(m_log.take(), QStringList({kNotAdded, kAdded}));

    m_session->startLayoutAdd("x");
    QVERIFY(!m_session->layoutCommandSuccess());
    QVERIFY(m_log.await(kAdded));
    QVERIFY(m_session->layoutCommandSuccess());
    QCOMPARE(sent().size(), chunk + 1);
    QCOMPARE(sent().last(), u"260378"_s);
}

void TestScreenLayouts::beginningAnew()
{
    CONNECT(connectTo(R"("faults":[{"step":"answer","kind":"silent"}])"));
    m_session->startLayoutAdd(blob(200));
    Simulator::notify(QByteArray::fromHex("dcdc0200a13800002601"));
    QTRY_COMPARE(sent().size(), 2);
    QVERIFY(m_session->layoutCommandSuccess());
    m_session->startLayoutAdd(blob(130));
    QVERIFY(!m_session->layoutCommandSuccess());
    Simulator::notify(QByteArray::fromHex("dcdc0200a13800002601"));
    QTRY_COMPARE(sent().size(), 4);
    QCOMPARE(sent(), QStringList({wire("01", blob(127)), wire("02", blob(200).sliced(127)),
                                  wire("01", blob(127)), wire("02", "\x7f\x80\x81")}));
    QCOMPARE(m_log.take(), QStringList());
    Simulator::notify(QByteArray::fromHex("dcdc0200a13800002601"));
    QVERIFY(m_log.await(kAdded));
}

using Job = void (*)(VardaSession &session);
Q_DECLARE_METATYPE(Job)

void TestScreenLayouts::shortAnswers_data()
{
    // One computer, which says nothing by itself, for all rows.
    CONNECT(connectTo(R"("faults":[{"step":"answer","kind":"silent"}])"));

    QTest::addColumn<Job>("job");
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("entry");

    const auto rows = [](const char *name, Job job, const QList<QByteArray> &frames) {
        const QString command = QLatin1String(name);
        const QString end = u"endCommand "_s + command;
        const QString error = u"exchangeError "_s + command + u" GenericError"_s;
        QTest::addRow("%s, yes", name) << job << frames[0] << true << end;
        QTest::addRow("%s, yes and more", name) << job << frames[1] << true << end;
        QTest::addRow("%s, no", name) << job << frames[2] << false << error;
        QTest::addRow("%s, nothing", name) << job << frames[3] << false << error;
    };
    rows("LayoutAdd", [](auto &s) { s.startLayoutAdd("x"); },
         {"dcdc0200a13800002601", "dcdc02007036000026ff", "dcdc0200802800002600",
          "dcdc01003888000026"});
    rows("LayoutRemove", [](auto &s) { s.startLayoutRemove(1); },
         {"dcdc0200900b00002701", "dcdc0300a511000027ff00", "dcdc0200b11b00002700",
          "dcdc01001998000027"});
    rows("LayoutRemoveAll", [](auto &s) { s.startLayoutRemoveAll(); },
         {"dcdc0200ae1b00002801", "dcdc0200ae1b00002801", "dcdc03004a2e0000280001",
          "dcdc0100f669000028"});
    rows("LayoutActiveSet", [](auto &s) { s.startLayoutActiveSet(1, 2); },
         {"dcdc0200cc7d00002a01", "dcdc0200cc7d00002a01", "dcdc03002a4000002a0001",
          "dcdc0100b44900002a"});
}

void TestScreenLayouts::shortAnswers()
{
    QFETCH(const Job, job);
    QFETCH(const QByteArray, frame);
    QFETCH(const bool, success);
    QFETCH(const QString, entry);
    job(*m_session);
    QVERIFY(!m_session->layoutCommandSuccess());
    Simulator::notify(QByteArray::fromHex(frame));
    QVERIFY(m_log.await(entry));
    QCOMPARE(m_session->layoutCommandSuccess(), success);
    QCOMPARE(m_log.take(), QStringList(entry));
}

QTEST_GUILESS_MAIN(TestScreenLayouts)
#include "tst_screenlayouts.moc"
