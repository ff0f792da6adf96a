// SPDX-License-Identifier: MIT
#include "commands/serve/request.h"

#include "commands/serve/methods.h"
#include "commands/serve/parameters.h"
#include "commands/serve/requesterror.h"
#include "run/failure.h"
#include "run/finding.h"

#include <QtCore/qjsondocument.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestId = 100;
constexpr qint64 kLargestId = (qint64(1) << 53) - 1; // many writers of JSON have no larger ones

[[noreturn]] void fail(const QString &what)
{
    throw RequestError{u"BadRequest"_s, what};
}

QJsonObject objectIn(const QByteArray &line)
{
    // Qt lets them pass within a text.
    const bool hasControls = std::ranges::any_of(
        line, [](char each) { return std::uint8_t(each) < 0x20 && each != '\t' && each != '\r'; });
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(line, &error);
    if (hasControls || error.error != QJsonParseError::NoError) {
        throw RequestError{u"NotJson"_s, u"the line is not JSON: "_s
                                             + (hasControls ? u"it has a control character"_s
                                                            : error.errorString())};
    }
    if (!document.isObject())
        fail(u"a request has to be an object"_s);
    return document.object();
}

bool isId(const QJsonValue &value)
{
    if (value.isString()) {
        const QString text = value.toString();
        return text.size() <= kLongestId && text.isValidUtf16();
    }
    constexpr qint64 kNone = kLargestId + 1;
    return value.isDouble() && std::abs(value.toInteger(kNone)) <= kLargestId;
}

QString textOf(const QJsonValue &value, const QString &name)
{
    if (!value.isString())
        fail(u"\"%1\" has to be a text"_s.arg(name));
    return value.toString();
}

QString addressOf(const QJsonValue &value)
{
    const auto address = addressIn(textOf(value, u"computer"_s));
    if (!address)
        fail(u"\"computer\" has to be an address, such as 00:AA:01:01:00:01"_s);
    return *address;
}

QJsonObject parametersOf(const QJsonValue &value)
{
    if (!value.isUndefined() && !value.isObject())
        fail(u"\"params\" has to be an object"_s);
    return value.toObject();
}

/** @throws RequestError */
Work workOf(const Method &method, Parameters parameters)
{
    try {
        Work work = method.prepare(parameters);
        parameters.requireNoOthers();
        return work;
    } catch (const Failure &failure) {
        throw RequestError{u"BadArgument"_s, failure.what, failure.advice};
    }
}

} // namespace

Json jsonOfId(const QJsonValue &id)
{
    if (id.isString())
        return id.toString();
    return id.isDouble() ? Json(id.toInteger()) : Json(nullptr);
}

void Request::read(const QByteArray &line)
{
    QJsonObject request = objectIn(line);
    const QJsonValue given = request.take("id"_L1);
    if (!isId(given))
        fail(u"\"id\" has to be an integer or a short text"_s);
    id = given;

    const QString name = textOf(request.take("method"_L1), u"method"_s);
    const Method *const method = methodNamed(name);
    if (!method)
        throw RequestError{u"UnknownMethod"_s, u"there is no method \"%1\""_s.arg(name.left(40))};
    usesComputer = method->usesComputer;

    if (request.contains("computer"_L1)) {
        computer = addressOf(request.take("computer"_L1));
        if (!usesComputer)
            fail(u"\"%1\" takes no computer"_s.arg(name));
    }
    const QJsonObject parameters = parametersOf(request.take("params"_L1));
    if (!request.isEmpty())
        fail(u"a request has no \"%1\""_s.arg(request.begin().key().left(40)));
    work = workOf(*method, Parameters(parameters));
}
