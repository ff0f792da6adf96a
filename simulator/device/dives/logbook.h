// SPDX-License-Identifier: MIT
#pragma once

#include "device/dives/divegenerator.h"

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qset.h>

namespace simulator {

class ObjectReader;

struct LogbookScenario {
    int version = 0;
    int sampleVersion = 0;
    int sampleFrame = 235;   ///< bytes of a stream in one frame
    QList<DiveRecipe> dives; ///< the oldest first
};

/** Reads "dives" and how they are sent; the newest layouts of the model are the default. */
LogbookScenario readLogbook(ObjectReader &reader, Model model);

/**
 * The dives that the computer remembers. They are made when somebody asks for them, so that a
 * large logbook costs nothing before.
 */
class Logbook
{
public:
    Logbook(const LogbookScenario &scenario, Model model) : m_scenario(scenario), m_model(model) { }

    /** The newest first, without those that the other side knows. */
    QList<QByteArray> headers(const QSet<quint16> &known) const;
    /** The stream of a dive's samples in pieces; none for a dive that is not there. */
    QList<QByteArray> samples(quint16 number) const;

    QList<quint16> numbers() const;
    qsizetype size() const { return m_scenario.dives.size(); }
    void removeNewest();
    void removeAll() { m_scenario.dives.clear(); }

private:
    QByteArray header(const DiveRecipe &recipe) const;
    QByteArray stream(const DiveRecipe &recipe) const;

    LogbookScenario m_scenario;
    Model m_model;
};

} // namespace simulator
