// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>
#include <QtTest/qtest.h>

#include <varda/vardajob.h>

/** Waits for the end of a job and keeps what it was: the job itself goes afterwards. */
class JobSpy : public QObject
{
public:
    explicit JobSpy(VardaJob *watched) : job(watched)
    {
        connect(watched, &VardaJob::finished, this, [this](VardaJob *finished) {
            ++ends;
            error = finished->error();
            reason = finished->reason();
            text = finished->errorText();
            outcomeUnknown = finished->outcomeUnknown();
            value = finished->value();
            done = finished->done();
            total = finished->total();
        });
    }

    [[nodiscard]] bool wait(int milliseconds = 60'000)
    {
        return QTest::qWaitFor([this] { return ends > 0; }, milliseconds);
    }

    QPointer<VardaJob> job;
    int ends = 0;
    VardaJob::Error error = VardaJob::NoError;
    VardaJob::Reason reason = VardaJob::Reason::None;
    QString text;
    bool outcomeUnknown = false;
    QVariant value;
    qint64 done = 0;
    qint64 total = 0;
};

/** Ends well, or stops the test with what is wrong. */
#define ENDS_WELL(SPY)                                                                             \
    QVERIFY((SPY).wait());                                                                         \
    QCOMPARE((SPY).text, QString());                                                               \
    QCOMPARE((SPY).error, VardaJob::NoError)
