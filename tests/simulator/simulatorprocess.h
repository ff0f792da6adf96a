// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include <functional>

// A simulator of its own for one test program, and the way to steer it. To be made before
// anything in the program uses the system bus: Qt connects to that once.
class SimulatorProcess
{
public:
    explicit SimulatorProcess(const QStringList &arguments = {});
    ~SimulatorProcess();
    Q_DISABLE_COPY_MOVE(SimulatorProcess)

    bool isRunning() const { return m_process.state() == QProcess::Running; }
    QString address() const { return m_address; }
    QProcess &process() { return m_process; }

    // The text of the error, empty if there is none.
    QString load(const QByteArray &scenario);
    QString loadDevice(const QByteArray &device);
    QString call(const QString &method, const QVariantList &arguments = {});

    QJsonArray record();
    QJsonObject state(const QString &address);
    QByteArray firmware(const QString &address);
    // The events of this kind.
    QList<QJsonObject> events(const QString &event);
    // One value of each event of this kind.
    QStringList values(const QString &event, const QString &key = QStringLiteral("hex"));

private:
    QDBusMessage ask(const QString &method, const QVariantList &arguments = {});

    QProcess m_process;
    QString m_address;
};
