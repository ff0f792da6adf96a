// SPDX-License-Identifier: MIT
#include "output/json.h"

#include <QtTest/qtest.h>

#include <limits>

using namespace Qt::StringLiterals;

class JsonTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values()
    {
        QCOMPARE(Json(true).text(), "true"_ba);
        QCOMPARE(Json(-5).text(), "-5"_ba);
        QCOMPARE(Json(std::uint8_t(200)).text(), "200"_ba);
        QCOMPARE(Json(std::int8_t(-1)).text(), "-1"_ba);
        QCOMPARE(Json(std::numeric_limits<std::uint64_t>::max()).text(), "18446744073709551615"_ba);
        QCOMPARE(Json(std::numeric_limits<std::int64_t>::min()).text(), "-9223372036854775808"_ba);
        QCOMPARE(Json(u"a\"b\\\n\u0000Å"_s).text(), "\"a\\\"b\\\\\\n\\u0000\303\205\""_ba);
        QCOMPARE(wide(quint64(12)).text(), "\"12\""_ba);
    }

    void fractions()
    {
        QCOMPARE(Json(0.5).text(), "0.5"_ba);
        QCOMPARE(Json(18.3).text(), "18.3"_ba);
        QCOMPARE(Json(7.0).text(), "7"_ba);
        // Not 0.3199999928474426: that is a double's idea of it.
        QCOMPARE(Json(0.32F).text(), "0.32"_ba);
        QCOMPARE(Json(std::numeric_limits<double>::quiet_NaN()).text(), "null"_ba);
        QCOMPARE(Json(std::numeric_limits<float>::infinity()).text(), "null"_ba);
    }

    void order()
    {
        const Json json = Fields{{"b"_L1, 1}, {"a"_L1, u"x"_s}, {"c"_L1, Fields{{"z"_L1, false}}}};
        QCOMPARE(json.text(), "{\n"
                              "    \"b\": 1,\n"
                              "    \"a\": \"x\",\n"
                              "    \"c\": {\n"
                              "        \"z\": false\n"
                              "    }\n"
                              "}"_ba);
    }

    void lists()
    {
        QCOMPARE(listOf(QList<int>()).text(), "[]"_ba);
        QCOMPARE(listOf(QList<int>{1, 2}).text(), "[1, 2]"_ba);
        // A record of plain values is a row; one that has more is not.
        const Json row = Fields{{"a"_L1, 1}, {"b"_L1, 2}};
        const Json other = Fields{{"a"_L1, listOf(QList<int>{1})}};
        QCOMPARE(Json(std::vector<Json>{row, other}).text(), "[\n"
                                                             "    {\"a\": 1, \"b\": 2},\n"
                                                             "    {\n"
                                                             "        \"a\": [1]\n"
                                                             "    }\n"
                                                             "]"_ba);
        QCOMPARE(Json(Fields()).text(), "{}"_ba);
    }

    void plain()
    {
        QCOMPARE(Json(u"a b"_s).plain(), u"a b"_s);
        QCOMPARE(Json(1.5).plain(), u"1.5"_s);
        QCOMPARE(listOf(QList<int>{1, 2}).plain(), u"1 2"_s);
        QCOMPARE(Json(Fields{{"x"_L1, 1}, {"y"_L1, 2}}).plain(), u"1/2"_s);
    }
};

QTEST_GUILESS_MAIN(JsonTest)
#include "tst_json.moc"
