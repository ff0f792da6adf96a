// SPDX-License-Identifier: MIT
#include "device/logbook.h"

#include "device/pieces.h"

#include <algorithm>

namespace simulator {

QList<QByteArray> Logbook::headers(const QSet<quint16> &known) const
{
    QList<QByteArray> headers;
    for (auto recipe = m_scenario.dives.crbegin(); recipe != m_scenario.dives.crend(); ++recipe) {
        if (known.contains(recipe->number))
            continue;
        headers.append(recipe->headerBytes ? *recipe->headerBytes
                                           : encodeHeader(generateDive(*recipe, m_model).header,
                                                          m_model, m_scenario.version));
    }
    return headers;
}

QList<QByteArray> Logbook::samples(quint16 number) const
{
    const auto recipe = std::find_if(
        m_scenario.dives.crbegin(), m_scenario.dives.crend(),
        [number](const DiveRecipe &each) { return each.number == number; });
    if (recipe == m_scenario.dives.crend())
        return {};
    const QByteArray stream = recipe->sampleBytes
                                  ? *recipe->sampleBytes
                                  : encodeSamples(generateDive(*recipe, m_model).samples, m_model,
                                                  m_scenario.sampleVersion);
    return inPieces(stream, m_scenario.sampleFrame);
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
