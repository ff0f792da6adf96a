// SPDX-License-Identifier: MIT
#include "device/scenario/jsonreader.h"

#include <QtCore/qregularexpression.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace simulator {

void badValue(const QString &path, const QString &problem)
{
    throw BadScenario{path.isEmpty() ? problem : path + u": "_s + problem};
}

qint64 readInteger(const QJsonValue &value, const QString &path, qint64 min, qint64 max)
{
    const double number = value.toDouble(std::nan(""));
    if (!value.isDouble() || number != std::floor(number))
        badValue(path, u"expected a whole number"_s);
    if (number < double(min) || number > double(max))
        badValue(path, u"%1 is not between %2 and %3"_s.arg(value.toInteger()).arg(min).arg(max));
    return value.toInteger();
}

double readNumber(const QJsonValue &value, const QString &path)
{
    if (!value.isDouble())
        badValue(path, u"expected a number"_s);
    return value.toDouble();
}

QString readText(const QJsonValue &value, const QString &path)
{
    if (!value.isString())
        badValue(path, u"expected a text"_s);
    return value.toString();
}

bool readBool(const QJsonValue &value, const QString &path)
{
    if (!value.isBool())
        badValue(path, u"expected true or false"_s);
    return value.toBool();
}

QByteArray readHex(const QJsonValue &value, const QString &path)
{
    // Spaces between bytes are welcome in long texts.
    static const QRegularExpression kPattern(u"^(\\s*[0-9A-Fa-f]{2})*\\s*$"_s);
    const QString text = readText(value, path);
    if (!kPattern.match(text).hasMatch())
        badValue(path, u"expected bytes in hexadecimal, two digits each"_s);
    return QByteArray::fromHex(text.toLatin1());
}

QJsonArray readArray(const QJsonValue &value, const QString &path)
{
    if (!value.isArray())
        badValue(path, u"expected a list"_s);
    return value.toArray();
}

ObjectReader::ObjectReader(const QJsonValue &value, const QString &path)
    : m_object(value.toObject()), m_path(path)
{
    if (!value.isObject())
        badValue(path, u"expected an object"_s);
}

QString ObjectReader::path(const char *key) const
{
    const QString name = QLatin1String(key);
    return m_path.isEmpty() ? name : m_path + u'.' + name;
}

bool ObjectReader::has(const char *key) const
{
    return m_object.contains(QLatin1String(key));
}

QJsonValue ObjectReader::take(const char *key)
{
    m_known.insert(QLatin1String(key));
    return m_object.value(QLatin1String(key));
}

qint64 ObjectReader::integer(const char *key, qint64 fallback, qint64 min, qint64 max)
{
    const QJsonValue value = take(key);
    return value.isUndefined() ? fallback : readInteger(value, path(key), min, max);
}

QString ObjectReader::text(const char *key, const QString &fallback)
{
    const QJsonValue value = take(key);
    return value.isUndefined() ? fallback : readText(value, path(key));
}

bool ObjectReader::boolean(const char *key, bool fallback)
{
    const QJsonValue value = take(key);
    return value.isUndefined() ? fallback : readBool(value, path(key));
}

QByteArray ObjectReader::hex(const char *key, const QByteArray &fallback)
{
    const QJsonValue value = take(key);
    return value.isUndefined() ? fallback : readHex(value, path(key));
}

QJsonArray ObjectReader::array(const char *key)
{
    const QJsonValue value = take(key);
    return value.isUndefined() ? QJsonArray() : readArray(value, path(key));
}

void ObjectReader::finish() const
{
    const QStringList keys = m_object.keys();
    for (const QString &key : keys) {
        if (!m_known.contains(key)) {
            QStringList known = m_known.values();
            known.sort();
            badValue(m_path.isEmpty() ? key : m_path + u'.' + key,
                     u"unknown key; known keys are %1"_s.arg(known.join(u", "_s)));
        }
    }
}

QString ObjectReader::notOneOf(const QString &wanted, const QStringList &known)
{
    return u"\"%1\" is not one of %2"_s.arg(wanted, known.join(u", "_s));
}

} // namespace simulator
