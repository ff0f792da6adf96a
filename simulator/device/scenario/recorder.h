// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qobject.h>

namespace simulator {

/** Everything that a test may want to know of what the host did, in order. */
class Recorder : public QObject
{
    Q_OBJECT

public:
    explicit Recorder(QObject *parent = nullptr);

    /** Events go to this file as well, one a line, as they happen. */
    bool openFile(const QString &name, QString *error);
    /** Why the file ends before the events do; empty if it does not. */
    QString fileError() const { return m_fileError; }

    void add(const QString &event, QJsonObject details = {});
    const QJsonArray &events() const { return m_events; }
    void clear() { m_events = {}; }
    /** Without what goes over the links: a large download would fill the memory. */
    void setWithTraffic(bool with) { m_withTraffic = with; }
    /** Times count from here. */
    void restart();

Q_SIGNALS:
    void recorded(const QJsonObject &event);
    /** Once; no more is written then. */
    void fileFailed();

private:
    void write(QByteArray line);

    QJsonArray m_events;
    bool m_withTraffic = true;
    QElapsedTimer m_time;
    QFile m_file;
    QString m_fileError;
};

} // namespace simulator
