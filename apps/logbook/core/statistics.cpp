// SPDX-License-Identifier: MIT
#include "statistics.h"

#include <QtCore/qdatetime.h>
#include <QtCore/qmap.h>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

struct Year {
    int dives = 0;
    double seconds = 0;
};

// A computer may report any depth; beyond this there is no diver.
constexpr double kDeepestMetres = 1000;

} // namespace

Statistics::Statistics(QObject *parent) : QObject(parent)
{
    // A synchronisation adds many dives, one after the other.
    m_later.setSingleShot(true);
    m_later.setInterval(0);
    connect(&m_later, &QTimer::timeout, this, &Statistics::update);
}

void Statistics::setDives(QAbstractItemModel *dives)
{
    if (m_dives == dives)
        return;
    if (m_dives)
        m_dives->disconnect(&m_later);
    m_dives = dives;
    if (dives) {
        const auto start = qOverload<>(&QTimer::start);
        connect(dives, &QAbstractItemModel::modelReset, &m_later, start);
        connect(dives, &QAbstractItemModel::rowsInserted, &m_later, start);
        connect(dives, &QAbstractItemModel::rowsRemoved, &m_later, start);
        connect(dives, &QAbstractItemModel::dataChanged, &m_later, start);
    }
    update();
    Q_EMIT divesChanged();
}

void Statistics::setStep(double metres)
{
    if (metres <= 0 || qFuzzyCompare(m_step, metres))
        return;
    m_step = metres;
    update();
}

void Statistics::count(double seconds, double depth)
{
    ++m_count;
    m_seconds += seconds;
    m_longest = std::max(m_longest, seconds);
    m_deepest = std::max(m_deepest, depth);
    m_depthSum += depth;
    const auto step = qsizetype(std::clamp(depth, 0.0, kDeepestMetres) / m_step);
    if (m_depths.size() <= step)
        m_depths.resize(step + 1);
    ++m_depths[step];
}

void Statistics::update()
{
    m_count = 0;
    m_seconds = m_longest = m_deepest = m_depthSum = 0;
    m_years.clear();
    m_depths.clear();
    QMap<int, Year> years;
    if (m_dives) {
        const QHash<int, QByteArray> names = m_dives->roleNames();
        const int duration = names.key("duration");
        const int depth = names.key("greatestDepth");
        const int begin = names.key("beginDate");
        for (int row = 0, rows = m_dives->rowCount(); row < rows; ++row) {
            const QModelIndex index = m_dives->index(row, 0);
            const double seconds = index.data(duration).toDouble();
            count(seconds, index.data(depth).toDouble());
            const QDate date = index.data(begin).toDateTime().date();
            if (date.isValid()) {
                ++years[date.year()].dives;
                years[date.year()].seconds += seconds;
            }
        }
    }
    for (auto year = years.cbegin(); year != years.cend(); ++year)
        m_years.prepend(QVariantMap{
            {u"year"_s, year.key()}, {u"dives"_s, year->dives}, {u"seconds"_s, year->seconds}});
    Q_EMIT changed();
}
