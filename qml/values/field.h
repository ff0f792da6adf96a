// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>
#include <QtCore/qobject.h>
#include <QtCore/qstring.h>
#include <QtCore/qvariant.h>
#include <QtQml/qqml.h>

#include <algorithm>

/**
 * A record as a value type of QML. Such a gadget has the record as its base and nothing of its own,
 * so that QML may read a record through it; each property is a field of the same name.
 *
 * NOLINTBEGIN(cppcoreguidelines-macro-usage): moc wants a class info and a property for each.
 */
#define VARDA_VALUE_TYPE(Record, Gadget, name)                                                     \
    Q_GADGET                                                                                       \
    QML_FOREIGN(Record)                                                                            \
    QML_VALUE_TYPE(name)                                                                           \
    QML_EXTENDED(Gadget)

/** A field that QML has a type for. */
#define VARDA_FIELD(Type, name) Q_PROPERTY(Type name MEMBER name CONSTANT)

/** A whole number of 64 bits; QML knows those to 2^53 exactly. */
#define VARDA_WIDE(name)                                                                           \
    Q_PROPERTY(double name READ name##Wide CONSTANT)                                               \
public:                                                                                            \
    double name##Wide() const                                                                      \
    {                                                                                              \
        return double(name);                                                                       \
    }

/** An array of numbers. */
#define VARDA_NUMBERS(name)                                                                        \
    Q_PROPERTY(QList<int> name READ name##Numbers CONSTANT)                                        \
public:                                                                                            \
    QList<int> name##Numbers() const                                                               \
    {                                                                                              \
        return {(name).begin(), (name).end()};                                                     \
    }

#define VARDA_REALS(name)                                                                          \
    Q_PROPERTY(QList<double> name READ name##Reals CONSTANT)                                       \
public:                                                                                            \
    QList<double> name##Reals() const                                                              \
    {                                                                                              \
        return {(name).begin(), (name).end()};                                                     \
    }

/** Bytes, as an ArrayBuffer. */
#define VARDA_BYTES(name)                                                                          \
    Q_PROPERTY(QByteArray name READ name##Bytes CONSTANT)                                          \
public:                                                                                            \
    QByteArray name##Bytes() const                                                                 \
    {                                                                                              \
        return {(name).data(), qsizetype((name).size())};                                          \
    }

/** A list of records, which are values themselves. */
#define VARDA_RECORDS(name)                                                                        \
    Q_PROPERTY(QVariantList name READ name##Records CONSTANT)                                      \
public:                                                                                            \
    QVariantList name##Records() const                                                             \
    {                                                                                              \
        return asVariants(name);                                                                   \
    }
// NOLINTEND(cppcoreguidelines-macro-usage)

template <typename Records> QVariantList asVariants(const Records &records)
{
    QVariantList variants;
    variants.reserve(qsizetype(records.size()));
    std::transform(records.begin(), records.end(), std::back_inserter(variants),
                   [](const auto &each) { return QVariant::fromValue(each); });
    return variants;
}
