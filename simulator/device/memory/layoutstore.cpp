// SPDX-License-Identifier: MIT
#include "device/memory/layoutstore.h"

#include "device/scenario/jsonreader.h"
#include "device/wire/pieces.h"
#include "device/wire/wirewriter.h"

#include <QtCore/qjsonarray.h>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr int kSlots = 16;
constexpr qsizetype kLargest = 65'536;
constexpr int kLongestName = 16;

// A layout begins with its name, if it has one.
QString nameIn(const QByteArray &blob, int index)
{
    const auto printable = [](char c) {
        const auto code = quint8(c);
        return (code >= 0x20 && code < 0x7F) || code >= 0xA0;
    };
    const auto end = std::find_if_not(blob.begin(), blob.end(), printable);
    const qsizetype length = std::min<qsizetype>(end - blob.begin(), kLongestName);
    return length > 0 ? QString::fromLatin1(blob.first(length)) : u"Layout %1"_s.arg(index);
}

QMap<int, Layout> builtIn()
{
    const auto made = [](int kind, const char *name, int size) {
        QByteArray blob = QByteArray(name) + '\0';
        while (blob.size() < size)
            blob.append(char(blob.size() * 7));
        return Layout{kind, QString::fromLatin1(name), blob};
    };
    return {
        {0, made(0, "Standard", 96)}, {1, made(0, "Big digits", 64)}, {2, made(1, "Cave", 700)}};
}

Layout readLayout(ObjectReader &reader)
{
    Layout layout;
    layout.kind = int(reader.integer("kind", 1, 0, 255));
    layout.name = reader.text("name", u"Layout"_s);
    layout.blob = reader.hex("blob", layout.name.toLatin1() + '\0');
    reader.finish();
    return layout;
}

void readActive(ObjectReader &reader, LayoutScenario &scenario)
{
    const QJsonArray active = reader.array("activeLayouts");
    if (size_t(active.size()) > scenario.active.size())
        badValue(reader.path("activeLayouts"), u"at most 5 dive modes fit"_s);
    for (qsizetype i = 0; i < active.size(); ++i) {
        scenario.active[size_t(i)] = qint8(
            readInteger(active[i], reader.path("activeLayouts") + u"[%1]"_s.arg(i), -128, 127));
    }
}

} // namespace

LayoutScenario readLayouts(ObjectReader &device)
{
    LayoutScenario scenario;
    scenario.frame = int(device.integer("layoutFrame", scenario.frame, 1, 65'534));
    readActive(device, scenario);
    if (device.take("layouts").isUndefined()) {
        scenario.layouts = builtIn();
        return scenario;
    }
    const QJsonArray list = device.array("layouts");
    for (qsizetype i = 0; i < list.size(); ++i) {
        ObjectReader reader(list[i], device.path("layouts") + u"[%1]"_s.arg(i));
        const int index = int(reader.integer("index", i, 0, 255));
        if (scenario.layouts.contains(index))
            badValue(reader.path("index"), u"%1 is already taken"_s.arg(index));
        scenario.layouts.insert(index, readLayout(reader));
    }
    return scenario;
}

QList<QByteArray> LayoutStore::list() const
{
    QList<QByteArray> entries;
    for (const auto &[index, layout] : m_scenario.layouts.asKeyValueRange()) {
        entries.append(WireWriter()
                           .u8(quint8(index))
                           .u8(quint8(layout.kind))
                           .bytes(layout.name.toLatin1())
                           .data());
    }
    return entries;
}

QList<QByteArray> LayoutStore::get(const QByteArray &index) const
{
    if (index.size() != 1)
        return {};
    return inPieces(m_scenario.layouts.value(quint8(index.front())).blob, m_scenario.frame);
}

QByteArray LayoutStore::active() const
{
    return {reinterpret_cast<const char *>(m_scenario.active.data()),
            qsizetype(m_scenario.active.size())};
}

bool LayoutStore::add(const QByteArray &chunk)
{
    constexpr quint8 kFirst = 1;
    constexpr quint8 kLast = 2;
    if (chunk.isEmpty())
        return false;
    const auto flags = quint8(chunk.front());
    if (flags & kFirst)
        m_incoming.clear();
    else if (!m_receiving)
        return false;
    m_incoming.append(chunk.sliced(1));
    m_receiving = !(flags & kLast) && m_incoming.size() <= kLargest;
    if (m_incoming.size() > kLargest)
        return false;
    return !(flags & kLast) || store(std::exchange(m_incoming, {}));
}

bool LayoutStore::store(const QByteArray &blob)
{
    for (int index = 0; index < kSlots; ++index) {
        if (!m_scenario.layouts.contains(index)) {
            m_scenario.layouts.insert(index, {1, nameIn(blob, index), blob});
            return true;
        }
    }
    return false;
}

bool LayoutStore::remove(const QByteArray &index)
{
    if (index.size() != 1)
        return false;
    const int which = quint8(index.front());
    if (m_scenario.layouts.value(which, {0, {}, {}}).kind == 0)
        return false;
    m_scenario.layouts.remove(which);
    forgetActive(which);
    return true;
}

bool LayoutStore::removeAll()
{
    const QList<int> indexes = m_scenario.layouts.keys();
    for (const int index : indexes)
        remove(QByteArray(1, char(index)));
    return true;
}

bool LayoutStore::setActive(const QByteArray &modeAndIndex)
{
    if (modeAndIndex.size() != 2)
        return false;
    const auto mode = size_t(quint8(modeAndIndex[0]));
    const auto index = qint8(modeAndIndex[1]);
    if (mode >= m_scenario.active.size()
        || (index != -1 && !m_scenario.layouts.contains(int(index))))
        return false;
    m_scenario.active[mode] = index;
    return true;
}

void LayoutStore::forgetActive(int index)
{
    std::ranges::replace_if(
        m_scenario.active, [index](qint8 each) { return each == index; }, qint8(-1));
}

void LayoutStore::addTo(QJsonObject &state) const
{
    QJsonArray layouts;
    for (const auto &[index, layout] : m_scenario.layouts.asKeyValueRange()) {
        layouts.append(QJsonObject{{u"index"_s, index},
                                   {u"kind"_s, layout.kind},
                                   {u"name"_s, layout.name},
                                   {u"hex"_s, QString::fromLatin1(layout.blob.toHex())}});
    }
    QJsonArray active;
    for (const qint8 index : m_scenario.active)
        active.append(int(index));
    state.insert(u"layouts"_s, layouts);
    state.insert(u"activeLayouts"_s, active);
}

} // namespace simulator
