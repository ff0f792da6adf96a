// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qabstractitemmodel.h>
#include <QtCore/qpointer.h>
#include <QtCore/qtimer.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqmlregistration.h>

/** Figures of the dives of a model with the roles of LogbookModel; they follow it. */
class Statistics : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QAbstractItemModel *dives READ dives WRITE setDives NOTIFY divesChanged)
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(double seconds READ seconds NOTIFY changed)
    Q_PROPERTY(double longest READ longest NOTIFY changed)           ///< seconds
    Q_PROPERTY(double deepest READ deepest NOTIFY changed)           ///< metres
    Q_PROPERTY(double averageDepth READ averageDepth NOTIFY changed) ///< of the greatest depths
    /** Each with year, dives and seconds, the latest first; a year without a dive is left out. */
    Q_PROPERTY(QVariantList years READ years NOTIFY changed)
    /** Width of a step of the histogram in metres. */
    Q_PROPERTY(double step READ step WRITE setStep NOTIFY changed)
    /** Dives by greatest depth: how many in each step, from the surface to the deepest. */
    Q_PROPERTY(QVariantList depths READ depths NOTIFY changed)

public:
    explicit Statistics(QObject *parent = nullptr);

    [[nodiscard]] QAbstractItemModel *dives() const { return m_dives; }
    void setDives(QAbstractItemModel *dives);
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] double seconds() const { return m_seconds; }
    [[nodiscard]] double longest() const { return m_longest; }
    [[nodiscard]] double deepest() const { return m_deepest; }
    [[nodiscard]] double averageDepth() const { return m_count ? m_depthSum / m_count : 0; }
    [[nodiscard]] QVariantList years() const { return m_years; }
    [[nodiscard]] double step() const { return m_step; }
    void setStep(double metres);
    [[nodiscard]] QVariantList depths() const { return {m_depths.begin(), m_depths.end()}; }

Q_SIGNALS:
    void divesChanged();
    void changed();

private:
    void count(double seconds, double depth);
    void update();

    QPointer<QAbstractItemModel> m_dives;
    QTimer m_later;
    int m_count = 0;
    double m_seconds = 0;
    double m_longest = 0;
    double m_deepest = 0;
    double m_depthSum = 0;
    double m_step = 10;
    QVariantList m_years;
    QList<int> m_depths;
};
