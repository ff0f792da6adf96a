// SPDX-License-Identifier: MIT
#include "devicemodel.h"

DeviceModel::DeviceModel(QObject *parent)
    : RecordModel(RecordKind::of<BleDeviceInfo, BleDeviceInfo>(), parent)
{
}

void DeviceModel::setSearch(SearchJob *search)
{
    if (m_search == search)
        return;
    if (m_search)
        m_search->disconnect(this);
    m_search = search;
    if (search) {
        replaceAll(QVariant::fromValue(search->devices()));
        connect(search, &SearchJob::deviceFound, this, &DeviceModel::update);
        connect(search, &SearchJob::deviceChanged, this, &DeviceModel::update);
    }
    Q_EMIT searchChanged();
}

void DeviceModel::update(const BleDeviceInfo &device)
{
    const QVariant record = QVariant::fromValue(device);
    for (int i = 0; i < count(); ++i) {
        if (recordList().at(i).value<BleDeviceInfo>().address() == device.address()) {
            replace(i, record);
            return;
        }
    }
    append(record);
}
