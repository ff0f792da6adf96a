// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>

#include <varda/searchjob.h>

#include "recordmodel.h"

/** The computers that a search finds, each once; they stay listed when it has ended. */
class DeviceModel : public RecordModel
{
    Q_OBJECT
    QML_ELEMENT
    /** Another search empties the list. */
    Q_PROPERTY(SearchJob *search READ search WRITE setSearch NOTIFY searchChanged)

public:
    explicit DeviceModel(QObject *parent = nullptr);

    [[nodiscard]] SearchJob *search() const { return m_search; }
    void setSearch(SearchJob *search);

Q_SIGNALS:
    void searchChanged();

private:
    void update(const BleDeviceInfo &device);

    QPointer<SearchJob> m_search;
};
