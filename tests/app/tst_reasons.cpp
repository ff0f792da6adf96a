// SPDX-License-Identifier: MIT
#include <QtCore/qmetaobject.h>
#include <QtCore/qstandardpaths.h>
#include <QtQml/qqmlcomponent.h>
#include <QtQml/qqmlengine.h>
#include <QtTest/qtest.h>

#include <memory>

#include <varda/vardajob.h>

#include "core/logbookui.h"

using namespace Qt::StringLiterals;

/** The app has its own words for each reason of a failure. */
class TestReasons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        installLogbookUi(m_engine);
        m_preferences = singleton("Preferences");
        m_reasons = singleton("Reasons");
        QVERIFY(m_preferences && m_reasons);
    }
    void eachHasWords_data();
    void eachHasWords();
    void lostLinkIsNoRefusedConnection();

private:
    [[nodiscard]] QString words(const char *function, int error, int reason) const
    {
        QString text;
        QMetaObject::invokeMethod(m_reasons, function, Q_RETURN_ARG(QString, text),
                                  Q_ARG(int, error), Q_ARG(int, reason));
        return text;
    }

    [[nodiscard]] QObject *singleton(const QByteArray &name)
    {
        QQmlComponent asking(&m_engine);
        asking.setData(
            "import QtQml\nimport Logbook\nimport Logbook.Core\nQtObject { property QtObject it: "
                + name + " }",
            {});
        const std::unique_ptr<QObject> asked(asking.create());
        return asked ? asked->property("it").value<QObject *>() : nullptr;
    }

    QQmlEngine m_engine;
    QObject *m_preferences = nullptr;
    QObject *m_reasons = nullptr;
};

void TestReasons::eachHasWords_data()
{
    QTest::addColumn<int>("reason");
    const auto reasons = QMetaEnum::fromType<VardaJob::Reason>();
    for (int i = 0; i < reasons.keyCount(); ++i) {
        if (reasons.value(i) != int(VardaJob::Reason::None))
            QTest::addRow("%s", reasons.key(i)) << reasons.value(i);
    }
}

void TestReasons::eachHasWords()
{
    QFETCH(int, reason);
    for (const char *const function : {"title", "remedy"}) {
        QVERIFY(m_preferences->setProperty("language", u"en"_s));
        const QString english = words(function, VardaJob::Refused, reason);
        const QString anyEnglish = words(function, VardaJob::Refused, 9999);
        QVERIFY(m_preferences->setProperty("language", u"fr"_s));
        const QString french = words(function, VardaJob::Refused, reason);
        QVERIFY(!english.isEmpty());
        QVERIFY(!french.isEmpty());
        QVERIFY2(english != anyEnglish, qPrintable(english));
        QVERIFY2(french != english, qPrintable(french));
    }
}

void TestReasons::lostLinkIsNoRefusedConnection()
{
    m_preferences->setProperty("language", u"en"_s);
    const int reason = int(VardaJob::Reason::LinkFailed);
    QCOMPARE(words("title", VardaJob::LinkLost, reason), u"The connection was lost"_s);
    QCOMPARE(words("title", VardaJob::NotConnected, reason),
             u"The computer could not be connected"_s);
}

QTEST_MAIN(TestReasons)
#include "tst_reasons.moc"
