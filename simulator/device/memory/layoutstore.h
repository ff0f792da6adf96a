// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qlist.h>
#include <QtCore/qmap.h>
#include <QtCore/qstring.h>

#include <array>

namespace simulator {

class ObjectReader;

struct Layout {
    int kind = 1; ///< 0: built in, stays for ever
    QString name;
    QByteArray blob;
};

struct LayoutScenario {
    QMap<int, Layout> layouts;                  ///< by index
    std::array<qint8, 5> active{0, 0, 0, 0, 0}; ///< of each dive mode; -1: none
    int frame = 235;                            ///< bytes of a layout in one frame
};

LayoutScenario readLayouts(ObjectReader &device);

/** The screens that a diver can load into the computer and choose from. */
class LayoutStore
{
public:
    explicit LayoutStore(const LayoutScenario &scenario) : m_scenario(scenario) { }

    QList<QByteArray> list() const;
    /** The pieces of one; none if there is no such. */
    QList<QByteArray> get(const QByteArray &index) const;
    QByteArray active() const;
    /** All tell whether they were done. */
    bool add(const QByteArray &chunk);
    bool remove(const QByteArray &index);
    bool removeAll();
    bool setActive(const QByteArray &modeAndIndex);

    void addTo(QJsonObject &state) const;

private:
    bool store(const QByteArray &blob);
    void forgetActive(int index);

    LayoutScenario m_scenario;
    QByteArray m_incoming;
    bool m_receiving = false;
};

} // namespace simulator
