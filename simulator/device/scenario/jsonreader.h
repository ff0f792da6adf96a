// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qset.h>
#include <QtCore/qstring.h>

#include <utility>

namespace simulator {

/**
 * What is wrong with a scenario, and where; thrown by the readers and caught by Scenario::parse.
 */
struct BadScenario {
    QString text;
};

[[noreturn]] void badValue(const QString &path, const QString &problem);

qint64 readInteger(const QJsonValue &value, const QString &path, qint64 min, qint64 max);
double readNumber(const QJsonValue &value, const QString &path);
QString readText(const QJsonValue &value, const QString &path);
bool readBool(const QJsonValue &value, const QString &path);
QByteArray readHex(const QJsonValue &value, const QString &path);
QJsonArray readArray(const QJsonValue &value, const QString &path);

/**
 * One object of a scenario. Every key is asked for by name; what nobody asked for is an error, so
 * that a misspelt key does not silently leave a default in place.
 */
class ObjectReader
{
public:
    ObjectReader(const QJsonValue &value, const QString &path);

    QString path(const char *key) const;
    bool has(const char *key) const;
    QJsonValue take(const char *key);
    QStringList keys() const { return m_object.keys(); }

    qint64 integer(const char *key, qint64 fallback, qint64 min, qint64 max);
    QString text(const char *key, const QString &fallback);
    bool boolean(const char *key, bool fallback);
    QByteArray hex(const char *key, const QByteArray &fallback = {});
    QJsonArray array(const char *key);

    template <typename Enum, std::size_t N>
    Enum choice(const char *key, Enum fallback, const std::pair<const char *, Enum> (&choices)[N])
    {
        const QJsonValue value = take(key);
        if (value.isUndefined())
            return fallback;
        const QString wanted = readText(value, path(key));
        QStringList known;
        for (const auto &[name, meant] : choices) {
            if (wanted == QLatin1String(name))
                return meant;
            known << QLatin1String(name);
        }
        badValue(path(key), notOneOf(wanted, known));
    }

    /** To be called when everything known has been asked for. */
    void finish() const;

private:
    static QString notOneOf(const QString &wanted, const QStringList &known);

    QJsonObject m_object;
    QString m_path;
    QSet<QString> m_known;
};

} // namespace simulator
