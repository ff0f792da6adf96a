// SPDX-License-Identifier: MIT
#pragma once

#include "bluez/objecttree.h"
#include "device/scenario/scenario.h"

#include <QtCore/qobject.h>
#include <QtCore/qstringlist.h>
#include <QtCore/qtimer.h>
#include <QtCore/qvariant.h>

#include <optional>

namespace simulator {

/**
 * A Device1 on the bus: there once the peripheral has advertised, and for a while after the
 * discovery unless somebody connected to it.
 */
class DeviceObject : public QObject
{
    Q_OBJECT

public:
    DeviceObject(const DeviceScenario &scenario, ObjectTree &tree, const QString &adapterPath,
                 int temporaryTimeout);

    const QString &path() const { return m_path; }
    bool isThere() const { return m_inTree; }
    bool isConnected() const { return m_connected; }

    void discoveryStarted(const QString &transport);
    void discoveryStopped();
    /** As a peripheral does when its link has ended while somebody looks for it. */
    void advertiseAgain();
    void advertise(int rssi, const std::optional<QString> &name = std::nullopt);

    void connected();
    /** @param wasResolved  whether its services were known to the other side */
    void disconnected(bool wasResolved);
    void change(const QVariantMap &changes, const QStringList &invalidated = {});
    /** There from the start, if the daemon knows it from before. */
    void addIfKnown();
    void remove();

Q_SIGNALS:
    /** It has not been heard of for so long that the daemon forgets it. */
    void forgotten();

private:
    void add();
    QVariantMap properties() const;

    const DeviceScenario m_scenario;
    ObjectTree &m_tree;
    const QString m_adapterPath;
    const QString m_path;
    QString m_name;
    bool m_inTree = false;
    bool m_connected = false;
    bool m_temporary = true;
    bool m_discovering = false;
    quint64 m_discovery = 0;
    int m_lastRssi = 0;
    QTimer m_temporaryTimer;
};

} // namespace simulator
