// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qpointer.h>

#include "recordmodel.h"
#include "storetype.h"

/** The computers whose dives a store has, in the order in which they were first seen. */
class StoreComputersModel : public RecordModel
{
    Q_OBJECT
    QML_NAMED_ELEMENT(LogbookComputerModel)
    Q_PROPERTY(StoreType *store READ store WRITE setStore NOTIFY storeChanged)

public:
    explicit StoreComputersModel(QObject *parent = nullptr);

    [[nodiscard]] StoreType *store() const { return m_store; }
    void setStore(StoreType *store);

Q_SIGNALS:
    void storeChanged();

private:
    void ask();
    void show(const QVariantList &computers);

    QPointer<StoreType> m_store;
    bool m_asking = false;
    bool m_askAgain = false;
};
