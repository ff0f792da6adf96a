// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbuffer.h>
#include <QtCore/qlist.h>
#include <QtCore/qstringlist.h>

#include <array>
#include <cmath>
#include <type_traits>

#include <varda/dive.h>
#include <varda/recordfields.h>

/** A dive of four samples and two gases, each field that a format carries with a value of its own. */
[[nodiscard]] Dive smallDive();
/** Dives with random values in every field; VARDA_FORMATS_DIVES or 500 of them. */
[[nodiscard]] QList<Dive> generatedDives();
/** Texts, numbers and samples that no sound computer sends. */
[[nodiscard]] QList<Dive> hostileDives();

/**
 * Compares with golden/NAME, which VARDA_UPDATE_GOLDEN=1 writes; @VERSION@ stands for the
 * library's. Empty if they are equal.
 */
[[nodiscard]] QString differenceFromGolden(const QString &name, const QByteArray &text);

/** What a format writes of the dives, empty if it cannot. */
template <typename Write> QByteArray textOf(const QList<Dive> &dives, Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return write(&buffer, dives).error.isEmpty() ? buffer.data() : QByteArray();
}

/** What a format reads in a text. */
template <typename Read> auto divesOf(QByteArray text, Read read)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return read(&buffer);
}

/** Half a pair of surrogates is no character: UTF-8 has none for it. */
inline QString asUtf8(const QString &text)
{
    return QString::fromUtf8(text.toUtf8());
}

/** Takes so many bytes, like a disk that is nearly full. */
class FullDisk : public QBuffer
{
public:
    explicit FullDisk(qint64 room) : m_room(room)
    {
        open(QIODevice::WriteOnly);
        setErrorString(QStringLiteral("No space left on device"));
    }

protected:
    qint64 writeData(const char *data, qint64 size) override
    {
        if (size > m_room)
            return -1;
        m_room -= size;
        return QBuffer::writeData(data, size);
    }

private:
    qint64 m_room;
};

template <typename Type> bool isSame(const Type &one, const Type &other);

template <typename Type, std::size_t N>
bool isSame(const std::array<Type, N> &one, const std::array<Type, N> &other)
{
    return one == other;
}

template <typename Type> bool isSame(const QList<Type> &one, const QList<Type> &other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Type &a, const Type &b) { return isSame(a, b); });
}

template <typename Type> bool isSame(const Type &one, const Type &other)
{
    if constexpr (hasFields<Type>) {
        bool same = true;
        forEachField<Type>([&](QLatin1StringView, auto get, auto) {
            same = same && isSame(get(one), get(other));
        });
        return same;
    } else if constexpr (std::is_floating_point_v<Type>) {
        return !(one < other || one > other) && std::isnan(one) == std::isnan(other);
    } else {
        return one == other;
    }
}

/** "dive 3: lines" for each field that differs. */
inline QStringList differences(const QList<Dive> &dives, const QList<Dive> &expected)
{
    QStringList found;
    if (dives.size() != expected.size())
        found.append(
            QStringLiteral("%1 dives instead of %2").arg(dives.size()).arg(expected.size()));
    for (qsizetype i = 0; i < qMin(dives.size(), expected.size()); ++i) {
        forEachField<Dive>([&](QLatin1StringView name, auto get, auto) {
            if (!isSame(get(dives[i]), get(expected[i])))
                found.append(QStringLiteral("dive %1: %2").arg(i).arg(name));
        });
    }
    return found;
}
