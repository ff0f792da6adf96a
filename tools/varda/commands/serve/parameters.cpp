// SPDX-License-Identifier: MIT
#include "commands/serve/parameters.h"

#include "commands/serve/requesterror.h"

#include <QtCore/qfileinfo.h>
#include <QtCore/qjsonarray.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void fail(QLatin1StringView name, const QString &what)
{
    throw RequestError{u"BadArgument"_s, u"parameter \"%1\" %2"_s.arg(name, what)};
}

std::optional<qint64> integerIn(const QJsonValue &value, qint64 lowest, qint64 highest)
{
    if (!value.isDouble())
        return std::nullopt;
    // Out of the range in both cases, where it is no integer.
    const qint64 integer = value.toInteger(lowest - 1);
    if (integer < lowest || integer > highest)
        return std::nullopt;
    return integer;
}

qint64 checkedInteger(QLatin1StringView name, const QJsonValue &value, qint64 lowest,
                      qint64 highest)
{
    const auto integer = integerIn(value, lowest, highest);
    if (!integer)
        fail(name, u"has to be an integer from %1 to %2"_s.arg(lowest).arg(highest));
    return *integer;
}

bool checkedFlag(QLatin1StringView name, const QJsonValue &value)
{
    if (!value.isBool())
        fail(name, u"has to be true or false"_s);
    return value.toBool();
}

/** A NUL would cut it off where it is a name for the system. */
bool isSound(const QString &text)
{
    return text.isValidUtf16() && !text.contains(QChar::Null);
}

QString checkedText(QLatin1StringView name, const QJsonValue &value)
{
    if (!value.isString())
        fail(name, u"has to be a text"_s);
    const QString text = value.toString();
    if (!isSound(text))
        fail(name, u"has a character that is none"_s);
    return text;
}

} // namespace

QJsonValue Parameters::take(QLatin1StringView name)
{
    return m_parameters.take(name);
}

QJsonValue Parameters::takeRequired(QLatin1StringView name)
{
    const QJsonValue value = take(name);
    if (value.isUndefined())
        fail(name, u"is missing"_s);
    return value;
}

bool Parameters::flag(QLatin1StringView name)
{
    const QJsonValue value = take(name);
    return !value.isUndefined() && checkedFlag(name, value);
}

bool Parameters::flagOrTrue(QLatin1StringView name)
{
    const QJsonValue value = take(name);
    return value.isUndefined() || checkedFlag(name, value);
}

bool Parameters::requiredFlag(QLatin1StringView name)
{
    return checkedFlag(name, takeRequired(name));
}

qint64 Parameters::integer(QLatin1StringView name, qint64 lowest, qint64 highest)
{
    return checkedInteger(name, takeRequired(name), lowest, highest);
}

qint64 Parameters::integer(QLatin1StringView name, qint64 lowest, qint64 highest, qint64 ifMissing)
{
    const QJsonValue value = take(name);
    return value.isUndefined() ? ifMissing : checkedInteger(name, value, lowest, highest);
}

float Parameters::real(QLatin1StringView name)
{
    const QJsonValue value = takeRequired(name);
    const double number = value.toDouble(std::numeric_limits<double>::infinity());
    if (!value.isDouble() || std::abs(number) > double(std::numeric_limits<float>::max()))
        fail(name, u"has to be a number"_s);
    return float(number);
}

QString Parameters::text(QLatin1StringView name)
{
    return checkedText(name, takeRequired(name));
}

QString Parameters::file(QLatin1StringView name)
{
    const QString path = text(name);
    if (!QFileInfo(path).isFile())
        fail(name, u"has to be the path of a file"_s);
    return path;
}

QString Parameters::fileToWrite(QLatin1StringView name)
{
    if (!m_parameters.contains(name))
        return {};
    const QString path = text(name);
    const QFileInfo info(path);
    if (path.isEmpty() || (info.exists() && !info.isFile()))
        fail(name, u"has to be the path of a file"_s);
    return path;
}

QByteArray Parameters::bytes(QLatin1StringView name)
{
    const QByteArray hex = text(name).toLatin1();
    const QByteArray bytes = QByteArray::fromHex(hex);
    // What is no digit is skipped there.
    if (hex.isEmpty() || bytes.toHex() != hex.toLower())
        fail(name, u"has to be bytes in hexadecimal"_s);
    return bytes;
}

QList<std::uint16_t> Parameters::diveNumbers(QLatin1StringView name)
{
    const QJsonValue value = take(name);
    if (!value.isUndefined() && !value.isArray())
        fail(name, u"has to be a list of numbers of dives"_s);
    const QJsonArray array = value.toArray();
    QList<std::uint16_t> numbers;
    numbers.reserve(array.size());
    for (const auto &each : array) {
        const auto number = integerIn(each, 0, std::numeric_limits<std::uint16_t>::max());
        if (!number)
            fail(name, u"has to be a list of numbers of dives"_s);
        numbers.append(std::uint16_t(*number));
    }
    std::ranges::sort(numbers);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

QJsonValue Parameters::id(QLatin1StringView name)
{
    return takeRequired(name);
}

void Parameters::requireConfirmation(const QString &what)
{
    if (!flag("confirm"_L1)) {
        throw RequestError{u"NotConfirmed"_s, u"this would %1"_s.arg(what),
                           u"To do it, add the parameter \"confirm\": true."_s};
    }
}

void Parameters::requireNoOthers() const
{
    if (!m_parameters.isEmpty()) {
        throw RequestError{u"BadArgument"_s, u"there is no parameter \"%1\" here"_s.arg(
                                                 m_parameters.begin().key().left(40))};
    }
}
