// SPDX-License-Identifier: MIT
#include <varda/csvformat.h>

#include <QtCore/qiodevice.h>
#include <QtCore/qmap.h>
#include <QtCore/qmetaobject.h>
#include <QtCore/qstringconverter.h>

#include <cmath>
#include <limits>
#include <optional>

#include "begin_p.h"
#include "number_p.h"

#include <varda/diveprofile.h>

using namespace Qt::StringLiterals;

namespace {

QStringList summaryColumns()
{
    return {u"serial number"_s,
            u"dive"_s,
            u"stamp (s)"_s,
            u"begin"_s,
            u"model"_s,
            u"firmware version"_s,
            u"owner"_s,
            u"duration (s)"_s,
            u"greatest depth (m)"_s,
            u"average depth (m)"_s,
            u"lowest temperature (C)"_s,
            u"highest temperature (C)"_s,
            u"sample interval (s)"_s,
            u"circuit"_s,
            u"gases"_s};
}

QStringList sampleColumns()
{
    return {u"serial number"_s,
            u"dive"_s,
            u"stamp (s)"_s,
            u"begin"_s,
            u"sample"_s,
            u"time (s)"_s,
            u"depth (m)"_s,
            u"temperature (C)"_s,
            u"gas"_s,
            u"mix"_s,
            u"oxygen (fraction)"_s,
            u"helium (fraction)"_s,
            u"nitrogen (fraction)"_s};
}

/** A spreadsheet would calculate a text that begins like a formula. */
QString harmless(const QString &text)
{
    static const QString kRisky = u"=+-@'\t\r"_s;
    return !text.isEmpty() && kRisky.contains(text.front()) ? u'\'' + text : text;
}

QString unharmed(const QString &text)
{
    return text.startsWith(u'\'') ? text.mid(1) : text;
}

QString quoted(const QString &field)
{
    const bool plain = !field.contains(u',') && !field.contains(u'"') && !field.contains(u'\n')
                       && !field.contains(u'\r');
    return plain ? field : u'"' + QString(field).replace(u'"', u"\"\""_s) + u'"';
}

QString numberOrEmpty(double value)
{
    return std::isfinite(value) ? decimals(value) : QString();
}

QByteArray row(const QStringList &fields)
{
    QStringList parts;
    parts.reserve(fields.size());
    for (const QString &field : fields)
        parts.append(quoted(field));
    return (parts.join(u',') + u"\r\n"_s).toUtf8();
}

QString modelName(ComputerModel::ComputerModelIn model)
{
    return QString::fromLatin1(
        QMetaEnum::fromType<ComputerModel::ComputerModelIn>().valueToKey(model));
}

QStringList identityOf(const Dive &dive)
{
    return {harmless(dive.serialNumber), QString::number(dive.diveNumber),
            QString::number(dive.stamp), beginText(dive.stamp)};
}

QByteArray summaryRow(const Dive &dive)
{
    const DiveProfile profile = DiveProfile::fromDive(dive);
    const bool hasProfile = !dive.lines.isEmpty();
    const auto figure = [&](double value) { return hasProfile ? numberOrEmpty(value) : QString(); };
    QStringList gases;
    for (const DiveGas &gas : dive.gases)
        gases.append(DiveProfile::gasName(gas));
    QStringList fields = identityOf(dive);
    fields += {modelName(dive.model),
               harmless(dive.firmwareVersion),
               harmless(dive.ownerName),
               figure(profile.duration),
               figure(profile.maximumDepth),
               figure(std::round(profile.meanDepth * 1000) / 1000),
               profile.temperature ? numberOrEmpty(profile.temperature->lowest) : QString(),
               profile.temperature ? numberOrEmpty(profile.temperature->highest) : QString(),
               QString::number(dive.sampleInterval),
               dive.kindByte == 0 ? u"open"_s : u"closed"_s,
               harmless(gases.join(u"; "_s))};
    return row(fields);
}

QByteArray sampleRows(const Dive &dive)
{
    const QStringList identity = identityOf(dive);
    const bool hasTemperature = DiveProfile::fromDive(dive).temperature.has_value();
    QByteArray text;
    for (qsizetype i = 0; i < dive.lines.size(); ++i) {
        const DiveLine &line = dive.lines[i];
        QStringList fields = identity;
        fields += {QString::number(i + 1), numberOrEmpty(line.time), numberOrEmpty(line.depth),
                   hasTemperature ? numberOrEmpty(line.aux1Value) : QString()};
        if (line.gasIndex >= 0 && line.gasIndex < dive.gases.size()) {
            const DiveGas &gas = dive.gases[line.gasIndex];
            fields += {
                QString::number(line.gasIndex + 1), harmless(DiveProfile::gasName(gas)),
                numberOrEmpty(double(gas.oxygen)).isEmpty() ? QString() : decimals(gas.oxygen),
                numberOrEmpty(double(gas.helium)).isEmpty() ? QString() : decimals(gas.helium),
                numberOrEmpty(double(gas.nitrogen)).isEmpty() ? QString() : decimals(gas.nitrogen)};
        } else {
            fields += {QString(), QString(), QString(), QString(), QString()};
        }
        text += row(fields);
    }
    return text;
}

template <typename Function>
DivesWritten writeRows(QIODevice *device, const QStringList &columns, const QList<Dive> &dives,
                       Function rowsOf)
{
    const auto put = [device](const QByteArray &text) {
        return device->write(text) == text.size();
    };
    bool ok = put(row(columns));
    for (qsizetype i = 0; i < dives.size() && ok; ++i)
        ok = put(rowsOf(dives[i]));
    return {.error = ok ? QString() : device->errorString(), .messages = {}};
}

/** The rows of a text, one at a time. */
class Rows
{
public:
    explicit Rows(QString text) : m_text(std::move(text)) { }

    /** False at the end, and if a quoted field has none. */
    [[nodiscard]] bool next(QStringList &fields)
    {
        fields.clear();
        if (m_at >= m_text.size())
            return false;
        m_line = m_nextLine;
        while (true) {
            QString field;
            if (!(peek() == u'"' ? quotedField(field) : plainField(field)))
                return false;
            fields.append(field);
            if (peek() == u',') {
                ++m_at;
                continue;
            }
            endOfRow();
            return true;
        }
    }

    [[nodiscard]] int line() const { return m_line; }
    [[nodiscard]] QString error() const { return m_error; }

private:
    [[nodiscard]] QChar peek() const { return m_at < m_text.size() ? m_text[m_at] : QChar(); }
    [[nodiscard]] bool atRowsEnd() const
    {
        return m_at >= m_text.size() || m_text[m_at] == u'\n' || m_text[m_at] == u'\r';
    }

    bool plainField(QString &field)
    {
        const qsizetype from = m_at;
        while (!atRowsEnd() && m_text[m_at] != u',')
            ++m_at;
        field = m_text.mid(from, m_at - from);
        return true;
    }

    bool quotedField(QString &field)
    {
        ++m_at;
        while (m_at < m_text.size()) {
            const QChar each = m_text[m_at++];
            if (each == u'\n')
                ++m_nextLine;
            if (each != u'"') {
                field += each;
            } else if (peek() == u'"') {
                field += u'"';
                ++m_at;
            } else if (atRowsEnd() || peek() == u',') {
                return true;
            } else {
                break;
            }
        }
        m_error = u"line %1: a quoted field does not end as it should"_s.arg(m_line);
        return false;
    }

    void endOfRow()
    {
        if (peek() == u'\r')
            ++m_at;
        if (peek() == u'\n')
            ++m_at;
        ++m_nextLine;
    }

    QString m_text;
    qsizetype m_at = 0;
    int m_line = 1;
    int m_nextLine = 1;
    QString m_error;
};

/** Takes the fields of one row, in order. */
class Row
{
public:
    explicit Row(const QStringList &fields) : m_fields(fields) { }

    [[nodiscard]] QString text() { return unharmed(next()); }
    void skip(int count) { m_at += count; }

    template <typename Whole> [[nodiscard]] Whole whole()
    {
        const QString field = next();
        bool ok = false;
        const quint64 value = field.toULongLong(&ok);
        if (!ok || value > quint64(std::numeric_limits<Whole>::max()))
            m_wrong = field;
        return Whole(value);
    }

    [[nodiscard]] double number(double whenEmpty)
    {
        const QString field = next();
        if (field.isEmpty())
            return whenEmpty;
        const std::optional<double> value = toNumber(field);
        if (!value)
            m_wrong = field;
        return value.value_or(0);
    }

    [[nodiscard]] float fraction()
    {
        const QString field = next();
        if (field.isEmpty())
            return std::numeric_limits<float>::quiet_NaN();
        const std::optional<float> value = toFloat(field);
        if (!value)
            m_wrong = field;
        return value.value_or(0);
    }

    [[nodiscard]] bool isEmpty() const { return m_fields.value(m_at).isEmpty(); }
    /** The field that is not what its column holds. */
    [[nodiscard]] std::optional<QString> wrong() const { return m_wrong; }

private:
    QString next() { return m_fields.value(m_at++); }

    QStringList m_fields;
    qsizetype m_at = 0;
    std::optional<QString> m_wrong;
};

void takeIdentity(Row &row, Dive &dive)
{
    dive.serialNumber = row.text();
    dive.diveNumber = row.whole<std::uint16_t>();
    dive.numberText = QString::number(dive.diveNumber);
    dive.stamp = row.whole<std::uint64_t>();
    row.skip(1);
}

Dive summaryOf(Row &row)
{
    Dive dive;
    takeIdentity(row, dive);
    const QByteArray model = row.text().toLatin1();
    const int value = QMetaEnum::fromType<ComputerModel::ComputerModelIn>().keyToValue(
        model.constData());
    dive.model = value < 0 ? ComputerModel::Unknown : ComputerModel::ComputerModelIn(value);
    dive.firmwareVersion = row.text();
    dive.ownerName = row.text();
    row.skip(5);
    dive.sampleInterval = row.whole<std::uint8_t>();
    return dive;
}

/** Puts samples together to dives. */
class Samples
{
public:
    explicit Samples(QList<Dive> &dives) : m_dives(dives) { }

    void add(Row &row)
    {
        Dive head;
        takeIdentity(row, head);
        const auto sample = row.whole<std::uint32_t>();
        if (sample == 1 || m_dives.isEmpty() || !isSame(head, m_dives.back())) {
            finish();
            m_dives.append(head);
        }
        DiveLine line;
        line.time = row.number(std::numeric_limits<double>::quiet_NaN());
        line.depth = row.number(std::numeric_limits<double>::quiet_NaN());
        line.aux1Value = row.number(0);
        if (!row.isEmpty()) {
            line.gasIndex = row.whole<std::int32_t>();
            row.skip(1);
            DiveGas &gas = m_gases[line.gasIndex];
            gas.oxygen = row.fraction();
            gas.helium = row.fraction();
            gas.nitrogen = row.fraction();
        }
        m_dives.back().lines.append(line);
    }

    /** Numbers the gases of the last dive as they stand in its list. */
    void finish()
    {
        if (m_dives.isEmpty())
            return;
        Dive &dive = m_dives.back();
        dive.gases = m_gases.values();
        QMap<std::int32_t, std::int32_t> indices;
        for (auto gas = m_gases.keyBegin(); gas != m_gases.keyEnd(); ++gas)
            indices.insert(*gas, std::int32_t(indices.size()));
        for (DiveLine &line : dive.lines)
            line.gasIndex = indices.value(line.gasIndex, -1);
        m_gases.clear();
    }

private:
    static bool isSame(const Dive &one, const Dive &other)
    {
        return one.diveNumber == other.diveNumber && one.stamp == other.stamp
               && one.serialNumber == other.serialNumber;
    }

    QList<Dive> &m_dives;
    QMap<std::int32_t, DiveGas> m_gases;
};

} // namespace

DivesWritten CsvFormat::writeSummary(QIODevice *device, const QList<Dive> &dives)
{
    return writeRows(device, summaryColumns(), dives, summaryRow);
}

DivesWritten CsvFormat::writeSamples(QIODevice *device, const QList<Dive> &dives)
{
    return writeRows(device, sampleColumns(), dives, sampleRows);
}

DivesRead CsvFormat::read(QIODevice *device)
{
    const auto failed = [](const QString &error) { return DivesRead{.dives = {}, .error = error}; };
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(device->readAll());
    if (decoder.hasError())
        return failed(u"the file is not in UTF-8"_s);
    Rows rows(text);
    QStringList fields;
    if (!rows.next(fields) || (fields != summaryColumns() && fields != sampleColumns()))
        return failed(u"line 1: these are not the columns of a file of dives"_s);
    const bool hasSamples = fields == sampleColumns();
    const qsizetype width = fields.size();
    DivesRead result;
    Samples samples(result.dives);
    while (rows.next(fields)) {
        if (fields.size() != width)
            return failed(u"line %1: %2 fields instead of %3"_s.arg(rows.line())
                              .arg(fields.size())
                              .arg(width));
        Row row(fields);
        if (hasSamples)
            samples.add(row);
        else
            result.dives.append(summaryOf(row));
        if (const std::optional<QString> wrong = row.wrong()) {
            return failed(u"line %1: \"%2\" is not a number of its column"_s.arg(rows.line())
                              .arg(wrong->left(40)));
        }
    }
    if (!rows.error().isEmpty())
        return failed(rows.error());
    if (hasSamples)
        samples.finish();
    return result;
}
