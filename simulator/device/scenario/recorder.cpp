// SPDX-License-Identifier: MIT
#include "device/scenario/recorder.h"

#include <QtCore/qjsondocument.h>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

bool isTraffic(const QString &event)
{
    return event == "frame"_L1 || event == "notification"_L1 || event == "write"_L1;
}

} // namespace

Recorder::Recorder(QObject *parent) : QObject(parent)
{
    m_time.start();
}

bool Recorder::openFile(const QString &name, QString *error)
{
    m_file.setFileName(name);
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return true;
    *error = m_file.errorString();
    return false;
}

void Recorder::add(const QString &event, QJsonObject details)
{
    if (!m_withTraffic && isTraffic(event))
        return;
    details.insert(u"event"_s, event);
    details.insert(u"t"_s, m_time.elapsed());
    m_events.append(details);
    if (m_file.isOpen())
        write(QJsonDocument(details).toJson(QJsonDocument::Compact) + '\n');
    Q_EMIT recorded(details);
}

void Recorder::write(QByteArray line)
{
    while (!line.isEmpty()) {
        // Less than all of it: the next call tells why.
        const qint64 written = m_file.write(line);
        if (written < 0) {
            m_fileError = m_file.errorString();
            m_file.close();
            Q_EMIT fileFailed();
            return;
        }
        line.remove(0, written);
    }
}

void Recorder::restart()
{
    clear();
    m_time.restart();
}

} // namespace simulator
