// SPDX-License-Identifier: MIT
#include <varda/jsonformat.h>

#include <QtCore/qiodevice.h>
#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <type_traits>

#include <varda/recordfields.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kFormat = "varda-dives"_L1;
constexpr int kVersion = 1;
/** Many readers keep only 53 bits of a number. */
constexpr qint64 kWidest = qint64(1) << 53;

QByteArray quoted(const QString &text)
{
    // Half a pair of surrogates is no character; UTF-8 has its own for it.
    const QString valid = QString::fromUtf8(text.toUtf8());
    const QByteArray list = QJsonDocument(QJsonArray{valid}).toJson(QJsonDocument::Compact);
    return list.sliced(1, list.size() - 2);
}

template <typename Number> QByteArray toJson(Number value)
{
    if constexpr (std::is_enum_v<Number>) {
        return toJson(std::underlying_type_t<Number>(value));
    } else if constexpr (std::is_same_v<Number, bool>) {
        return value ? "true" : "false";
    } else if constexpr (std::is_floating_point_v<Number>) {
        if (std::isnan(value))
            return "\"NaN\"";
        if (std::isinf(value))
            return value > 0 ? "\"Infinity\"" : "\"-Infinity\"";
        std::array<char, 32> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
        return {buffer.data(), end - buffer.data()};
    } else {
        using Wide = std::conditional_t<std::is_signed_v<Number>, qint64, quint64>;
        QByteArray digits = QByteArray::number(Wide(value));
        if (std::is_signed_v<Number> ? std::abs(double(value)) > double(kWidest)
                                     : quint64(value) > quint64(kWidest))
            return '"' + digits + '"';
        return digits;
    }
}

QByteArray toJson(const QString &text)
{
    return quoted(text);
}

template <typename Record> QByteArray recordToJson(const Record &record, bool sparse);

template <typename Range> QByteArray listToJson(const Range &range)
{
    using Element = typename Range::value_type;
    QByteArray text("[");
    for (const Element &each : range) {
        if (text.size() > 1)
            text += hasFields<Element> ? "," : ", ";
        if constexpr (hasFields<Element>)
            text += "\n        " + recordToJson(each, std::is_same_v<Element, DiveLine>);
        else
            text += toJson(each);
    }
    return text + ']';
}

template <typename Type, std::size_t N> QByteArray toJson(const std::array<Type, N> &array)
{
    return listToJson(array);
}

template <typename Type> QByteArray toJson(const QList<Type> &list)
{
    return listToJson(list);
}

/** @param sparse  a member but time and depth is left out if it has its default */
template <typename Record> QByteArray recordToJson(const Record &record, bool sparse)
{
    const Record defaults{};
    QByteArray text;
    forEachField<Record>([&](QLatin1StringView name, auto get, auto) {
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(get(record))>>) {
            const bool isDefault = std::equal_to<>()(get(record), get(defaults));
            if (sparse && isDefault && name != "time"_L1 && name != "depth"_L1)
                return;
        }
        if (!text.isEmpty())
            text += ", ";
        text += '"' + QByteArray(name.data(), name.size()) + "\": " + toJson(get(record));
    });
    return '{' + text + '}';
}

QByteArray diveToJson(const Dive &dive)
{
    QByteArray text;
    forEachField<Dive>([&](QLatin1StringView name, auto get, auto) {
        text += text.isEmpty() ? "\n      \"" : ",\n      \"";
        text += QByteArray(name.data(), name.size()) + "\": " + toJson(get(dive));
    });
    return "    {" + text + "\n    }";
}

/** Reads values into fields, and says which could not be read. */
class Reader
{
public:
    [[nodiscard]] QString error() const { return m_error; }

    template <typename Record> void read(const QJsonValue &value, Record &record, const QString &at)
    {
        if (!value.isObject()) {
            complain(at, u"is not an object"_s);
            return;
        }
        const QJsonObject members = value.toObject();
        forEachField<Record>([&](QLatin1StringView name, auto get, auto set) {
            const auto member = members.constFind(name);
            if (member == members.constEnd())
                return; // it keeps its default
            std::decay_t<decltype(get(record))> field = get(record);
            take(*member, field, at + u'.' + name);
            set(record, field);
        });
    }

private:
    void complain(const QString &at, const QString &what)
    {
        if (m_error.isEmpty())
            m_error = at + u' ' + what;
    }

    template <typename Type> void take(const QJsonValue &value, Type &field, const QString &at)
    {
        if constexpr (hasFields<Type>)
            read(value, field, at);
        else if constexpr (std::is_enum_v<Type>)
            takeEnum(value, field, at);
        else if constexpr (std::is_same_v<Type, bool>)
            takeBool(value, field, at);
        else if constexpr (std::is_floating_point_v<Type>)
            takeReal(value, field, at);
        else
            takeWhole(value, field, at);
    }

    void take(const QJsonValue &value, QString &field, const QString &at)
    {
        if (value.isString())
            field = value.toString();
        else
            complain(at, u"is not a text"_s);
    }

    template <typename Type, std::size_t N>
    void take(const QJsonValue &value, std::array<Type, N> &field, const QString &at)
    {
        const QJsonArray elements = value.toArray();
        if (!value.isArray() || elements.size() != qsizetype(N)) {
            complain(at, u"is not a list of %1 values"_s.arg(N));
            return;
        }
        for (std::size_t i = 0; i < N; ++i)
            take(elements[qsizetype(i)], field[i], at + u"[%1]"_s.arg(i));
    }

    template <typename Type>
    void take(const QJsonValue &value, QList<Type> &field, const QString &at)
    {
        if (!value.isArray()) {
            complain(at, u"is not a list"_s);
            return;
        }
        const QJsonArray elements = value.toArray();
        field.clear();
        for (qsizetype i = 0; i < elements.size() && m_error.isEmpty(); ++i) {
            Type element{};
            take(elements[i], element, at + u"[%1]"_s.arg(i));
            field.append(element);
        }
    }

    void takeBool(const QJsonValue &value, bool &field, const QString &at)
    {
        if (value.isBool())
            field = value.toBool();
        else
            complain(at, u"is neither true nor false"_s);
    }

    template <typename Real> void takeReal(const QJsonValue &value, Real &field, const QString &at)
    {
        const QString text = value.toString();
        if (value.isDouble()
            && std::abs(value.toDouble()) <= double(std::numeric_limits<Real>::max()))
            field = Real(value.toDouble());
        else if (text == "NaN"_L1)
            field = std::numeric_limits<Real>::quiet_NaN();
        else if (text == "Infinity"_L1)
            field = std::numeric_limits<Real>::infinity();
        else if (text == "-Infinity"_L1)
            field = -std::numeric_limits<Real>::infinity();
        else
            complain(at, u"is not a number"_s);
    }

    template <typename Whole>
    void takeWhole(const QJsonValue &value, Whole &field, const QString &at)
    {
        const bool isNumber = value.isDouble() && value.toInteger(0) == value.toInteger(1);
        const QString digits = isNumber ? QString::number(value.toInteger()) : value.toString();
        bool ok = false;
        if constexpr (std::is_signed_v<Whole>) {
            const qint64 number = digits.toLongLong(&ok);
            field = Whole(number);
            ok = ok && qint64(field) == number;
        } else {
            const quint64 number = digits.toULongLong(&ok);
            field = Whole(number);
            ok = ok && quint64(field) == number;
        }
        if (!ok)
            complain(at, u"is not a whole number of its range"_s);
    }

    template <typename Enum> void takeEnum(const QJsonValue &value, Enum &field, const QString &at)
    {
        std::underlying_type_t<Enum> number{};
        takeWhole(value, number, at);
        field = Enum(number);
    }

    QString m_error;
};

} // namespace

DivesWritten JsonFormat::write(QIODevice *device, const QList<Dive> &dives)
{
    const auto put = [device](const QByteArray &text) {
        return device->write(text) == text.size();
    };
    const QByteArray kind = QByteArray(kFormat.data(), kFormat.size());
    bool ok = put("{\n  \"format\": \"" + kind
                  + "\",\n  \"version\": " + QByteArray::number(kVersion) + ",\n  \"dives\": [");
    for (qsizetype i = 0; i < dives.size() && ok; ++i)
        ok = put(i == 0 ? "\n" : ",\n") && put(diveToJson(dives[i]));
    ok = ok && put("\n  ]\n}\n");
    return {.error = ok ? QString() : device->errorString(), .messages = {}};
}

DivesRead JsonFormat::read(QIODevice *device)
{
    const auto failed = [](const QString &error) { return DivesRead{.dives = {}, .error = error}; };
    QJsonParseError parsing{};
    const QJsonDocument document = QJsonDocument::fromJson(device->readAll(), &parsing);
    if (parsing.error != QJsonParseError::NoError)
        return failed(u"byte %1: %2"_s.arg(parsing.offset).arg(parsing.errorString()));
    const QJsonObject root = document.object();
    if (root["format"_L1].toString() != kFormat || !root["dives"_L1].isArray())
        return failed(u"this is no file of dives: it has no \"format\": \"varda-dives\""_s);
    if (root["version"_L1].toInt() != kVersion)
        return failed(u"the file has a version that this program does not know"_s);
    const QJsonArray elements = root["dives"_L1].toArray();
    DivesRead result;
    Reader reader;
    for (qsizetype i = 0; i < elements.size() && reader.error().isEmpty(); ++i) {
        Dive dive;
        reader.read(elements[i], dive, u"dives[%1]"_s.arg(i));
        result.dives.append(dive);
    }
    return reader.error().isEmpty() ? result : failed(reader.error());
}
