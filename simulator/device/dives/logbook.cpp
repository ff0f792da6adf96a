// SPDX-License-Identifier: MIT
#include "device/dives/logbook.h"

#include "device/wire/pieces.h"

namespace simulator {

QList<QByteArray> Logbook::headers(const QSet<quint16> &known) const
{
    QList<QByteArray> headers;
    for (qsizetype i = size() - 1; i >= 0; --i) {
        if (!known.contains(m_scenario.dives[i].number))
            headers.append(header(m_scenario.dives[i]));
    }
    return headers;
}

QByteArray Logbook::header(const DiveRecipe &recipe) const
{
    if (recipe.headerBytes)
        return *recipe.headerBytes;
    return encodeHeader(generateDive(recipe, m_model).header, m_model, m_scenario.version);
}

QList<QByteArray> Logbook::samples(quint16 number) const
{
    for (qsizetype i = size() - 1; i >= 0; --i) {
        if (m_scenario.dives[i].number == number)
            return inPieces(stream(m_scenario.dives[i]), m_scenario.sampleFrame);
    }
    return {};
}

QByteArray Logbook::stream(const DiveRecipe &recipe) const
{
    if (recipe.sampleBytes)
        return *recipe.sampleBytes;
    return encodeSamples(generateDive(recipe, m_model).samples, m_model, m_scenario.sampleVersion);
}

QList<quint16> Logbook::numbers() const
{
    QList<quint16> numbers;
    for (const DiveRecipe &recipe : m_scenario.dives)
        numbers.append(recipe.number);
    return numbers;
}

void Logbook::removeNewest()
{
    if (!m_scenario.dives.isEmpty())
        m_scenario.dives.removeLast();
}

} // namespace simulator
