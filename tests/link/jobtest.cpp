// SPDX-License-Identifier: MIT
#include "jobtest.h"

using namespace Qt::StringLiterals;

QString JobTest::connectTo(const QByteArray &keys, BleMode mode)
{
    m_session.reset();
    m_log.react = nullptr;
    QString problem = Simulator::loadKnown(R"("mode":"both")"
                                           + (keys.isEmpty() ? keys : "," + keys));
    if (!problem.isEmpty())
        return problem;
    m_session = std::make_unique<VardaSession>();
    m_log.watch(m_session.get());
    m_session->connectTo(knownDevice(), mode);
    if (!m_log.await(u"Connected"_s))
        return m_log.take().join(u", ");
    m_log.take();
    return {};
}

QString JobTest::connectToAnswers(const QByteArray &responses)
{
    return connectTo(R"("responses":{)" + responses + "}");
}

QByteArray JobTest::answer(const char *command, const QList<QByteArray> &payloads)
{
    return "\"" + QByteArray(command) + "\":[\"" + payloads.join("\",\"") + "\"]";
}

QStringList JobTest::told(const std::function<void()> &job, const QString &end)
{
    job();
    if (!m_log.await(end))
        qWarning("no %s", qPrintable(end));
    return m_log.take();
}

QStringList JobTest::told(TidemarCommand::TidemarCommandIn command, const QString &end)
{
    return told([&] { m_session->startCommand(command); }, end);
}

QStringList JobTest::sent()
{
    QStringList frames = Simulator::frames();
    for (QString &frame : frames)
        frame.remove(0, 16);
    return frames;
}
