// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qstringlist.h>

#include <functional>

class BleDevice;
class BleScanner;
class VardaBleProtocol;
class VardaSession;

/** The signals of all watched objects with their arguments, in the order in which they came. */
class SignalLog : public QObject
{
    Q_OBJECT

public:
    /** "found NAME ADDRESS RSSI", "devices COUNT", "scanning FLAG", "scanFinished", "scanError T" */
    void watch(BleScanner *scanner);
    /** "state STATE", "deviceName NAME", "notification HEX", "error TEXT", "servicesDiscovered" … */
    void watch(BleDevice *device);
    /** "response COMMAND HEX L", "protocolError COMMAND ERROR", "receiveTimeout COMMAND", "ready" */
    void watch(VardaBleProtocol *protocol);
    /** "message TEXT", "Created", "Connected", "NoController", "endCommand COMMAND" … */
    void watch(VardaSession *session);

    [[nodiscard]] const QStringList &entries() const { return m_entries; }
    /** All of it; the log is empty then. */
    QStringList take();
    /** Whether an entry is there @p times, or comes within a time that no healthy machine needs. */
    [[nodiscard]] bool await(const QString &entry, int times = 1);

    /** Called from inside each signal, after its entry was made. */
    std::function<void(const QString &entry)> react;

private:
    void add(const QString &entry);

    QStringList m_entries;
};
