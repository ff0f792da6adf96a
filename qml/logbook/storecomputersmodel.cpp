// SPDX-License-Identifier: MIT
#include "storecomputersmodel.h"

#include "logbookvalues.h"

StoreComputersModel::StoreComputersModel(QObject *parent)
    : RecordModel(RecordKind::of<LogbookComputerValue, LogbookComputer>(), parent)
{
}

void StoreComputersModel::setStore(StoreType *store)
{
    if (m_store == store)
        return;
    if (m_store)
        m_store->disconnect(this);
    m_store = store;
    if (store) {
        connect(store, &StoreType::changed, this, &StoreComputersModel::ask);
        connect(store, &StoreType::openChanged, this, &StoreComputersModel::ask);
    }
    ask();
    Q_EMIT storeChanged();
}

/** Many changes in a row are one question after the one that is asked. */
void StoreComputersModel::ask()
{
    m_askAgain = m_asking;
    if (m_asking)
        return;
    if (!m_store || !m_store->isOpen()) {
        show({});
        return;
    }
    m_asking = true;
    using Computers = QList<LogbookComputer>;
    m_store->library().computers(this, [this](const LogbookResult<Computers> &result) {
        m_asking = false;
        if (m_askAgain)
            ask();
        else if (!result.error)
            show(asVariants(result.value));
        else if (m_store)
            m_store->report(result.error);
    });
}

/** Row by row, so that a view keeps what is chosen in it; no computer is ever taken out of a store. */
void StoreComputersModel::show(const QVariantList &computers)
{
    if (computers.size() < count()) {
        replaceAll(computers);
        return;
    }
    for (int i = 0; i < computers.size(); ++i) {
        if (i < count())
            replace(i, computers.at(i));
        else
            append(computers.at(i));
    }
}
