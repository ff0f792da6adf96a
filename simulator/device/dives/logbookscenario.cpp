// SPDX-License-Identifier: MIT
#include "device/dives/logbook.h"
#include "device/scenario/jsonreader.h"
#include "device/scenario/scenario.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace simulator {

namespace {

constexpr std::pair<const char *, DiveKind> kKinds[] = {
    {"recreational", DiveKind::Recreational},
    {"decompression", DiveKind::Decompression},
    {"trimix", DiveKind::Trimix},
    {"closedCircuit", DiveKind::ClosedCircuit},
};

constexpr int kDefaultCount = 12;

struct Newest {
    Model model;
    int header;
    int samples;
};

// The last versions that change anything for a model.
constexpr Newest kNewest[] = {
    {Model::Varda, 10, 3},     {Model::Tidemar, 5, 3}, {Model::Vskm, 5, 2},
    {Model::ThirdParty, 5, 2}, {Model::None, 5, 2},
};

// Wide numbers do not fit in a JSON number and may be texts in hexadecimal; negative ones are
// meant as the two's complement of the field's width.
quint64 readField(const QJsonValue &value, const QString &path, int bytes)
{
    if (value.isString()) {
        bool ok = false;
        const quint64 number = value.toString().toULongLong(&ok, 16);
        if (!ok || (bytes < 8 && number >> (8 * bytes)))
            badValue(path,
                     u"expected a number or a hexadecimal text that fits in %1 bytes"_s.arg(bytes));
        return number;
    }
    const int bits = bytes == 8 ? 53 : 8 * bytes;
    return quint64(readInteger(value, path, -(qint64(1) << (bits - 1)), (qint64(1) << bits) - 1));
}

template <typename Array>
void readList(ObjectReader &reader, const char *key, Array &target, qint64 max)
{
    const QJsonArray list = reader.array(key);
    if (size_t(list.size()) > target.size())
        badValue(reader.path(key), u"at most %1 fit"_s.arg(target.size()));
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QString where = reader.path(key) + u"[%1]"_s.arg(i);
        target[size_t(i)] = typename Array::value_type(readInteger(list[i], where, 0, max));
    }
}

void readHeader(ObjectReader &dive, DiveRecipe &recipe)
{
    const QJsonValue header = dive.take("header");
    if (header.isUndefined())
        return;
    ObjectReader reader(header, dive.path("header"));
    for (int i = 0; i < int(HeaderField::Count); ++i) {
        const auto field = HeaderField(i);
        const char *name = nameOf(field);
        const QJsonValue value = reader.take(name);
        if (!value.isUndefined())
            recipe.fields.append({field, readField(value, reader.path(name), widthOf(field))});
    }
    const auto optionalList = [&](const char *key, auto &target, qint64 max) {
        if (!reader.take(key).isUndefined())
            readList(reader, key, target.emplace(), max);
    };
    optionalList("tissueN2", recipe.tissueN2, 0xFFFF);
    optionalList("tissueHe", recipe.tissueHe, 0xFFFF);
    optionalList("gasO2", recipe.gasO2, 0xFF);
    optionalList("gasHe", recipe.gasHe, 0xFF);
    reader.finish();
}

void readProfile(ObjectReader &reader, DiveRecipe &recipe)
{
    if (reader.take("profile").isUndefined())
        return;
    const QJsonArray list = reader.array("profile");
    recipe.profile.emplace();
    for (qsizetype i = 0; i < list.size(); ++i)
        recipe.profile->append(readSample(list[i], reader.path("profile") + u"[%1]"_s.arg(i)));
}

// What may be said of one dive as well as of many.
void readCommon(ObjectReader &reader, DiveRecipe &recipe)
{
    recipe.seed = quint64(reader.integer("seed", qint64(recipe.seed), 0, qint64(1) << 40));
    recipe.samples = int(reader.integer("samples", 0, 1, 1'000'000));
    recipe.interval = int(reader.integer("interval", 5, 1, 255));
    if (!reader.take("kind").isUndefined())
        recipe.kind = reader.choice("kind", DiveKind::Recreational, kKinds);
    readHeader(reader, recipe);
    readProfile(reader, recipe);
}

DiveRecipe readDive(const QJsonValue &value, const QString &path, int fallbackNumber)
{
    ObjectReader reader(value, path);
    DiveRecipe recipe;
    recipe.number = quint16(reader.integer("number", fallbackNumber, 0, 0xFFFF));
    readCommon(reader, recipe);
    if (!reader.take("headerBytes").isUndefined())
        recipe.headerBytes = reader.hex("headerBytes");
    if (!reader.take("sampleBytes").isUndefined())
        recipe.sampleBytes = reader.hex("sampleBytes");
    reader.finish();
    return recipe;
}

QList<DiveRecipe> numbered(const DiveRecipe &pattern, int first, int count)
{
    QList<DiveRecipe> dives;
    dives.reserve(count);
    for (int i = 0; i < count; ++i) {
        dives.append(pattern);
        dives.last().number = quint16(first + i);
    }
    return dives;
}

QList<DiveRecipe> readDives(const QJsonValue &value, const QString &path)
{
    constexpr int kMost = 65'535;
    if (value.isUndefined())
        return numbered({}, 1, kDefaultCount);
    if (value.isDouble())
        return numbered({}, 1, int(readInteger(value, path, 0, kMost)));
    if (value.isArray()) {
        QList<DiveRecipe> dives;
        const QJsonArray list = value.toArray();
        for (qsizetype i = 0; i < list.size(); ++i)
            dives.append(readDive(list[i], path + u"[%1]"_s.arg(i), int(i) + 1));
        return dives;
    }
    ObjectReader reader(value, path);
    const int count = int(reader.integer("count", kDefaultCount, 0, kMost));
    const int first = int(reader.integer("first", 1, 0, kMost));
    if (first + count > kMost + 1)
        badValue(reader.path("count"), u"dive numbers end at %1"_s.arg(kMost));
    DiveRecipe pattern;
    readCommon(reader, pattern);
    reader.finish();
    return numbered(pattern, first, count);
}

void checkNumbers(const LogbookScenario &logbook, const QString &path)
{
    // Without a version in front, a larger number would be taken for one.
    constexpr quint16 kLargestPlain = 0x8000;
    if (logbook.version > 0)
        return;
    for (const DiveRecipe &dive : logbook.dives) {
        if (!dive.headerBytes && dive.number > kLargestPlain)
            badValue(path, u"logbook version 0 has no dive number above %1"_s.arg(kLargestPlain));
    }
}

} // namespace

LogbookScenario readLogbook(ObjectReader &reader, Model model)
{
    const Newest &newest = *std::ranges::find(kNewest, model, &Newest::model);
    LogbookScenario logbook;
    logbook.version = int(reader.integer("logbookVersion", newest.header, 0, 255));
    logbook.sampleVersion = int(reader.integer("sampleVersion", newest.samples, 0, 255));
    logbook.sampleFrame = int(reader.integer("sampleFrame", 235, 1, 65'534));
    logbook.dives = readDives(reader.take("dives"), reader.path("dives"));
    checkNumbers(logbook, reader.path("dives"));
    return logbook;
}

} // namespace simulator
