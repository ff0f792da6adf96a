// SPDX-License-Identifier: MIT
// What another program writes to varda serve.
#include "fuzz.h"

#include "commands/serve/linereader.h"
#include "commands/serve/request.h"
#include "commands/serve/requesterror.h"
#include "commands/serve/task.h"
#include "output/safetext.h"

#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

using namespace Qt::StringLiterals;

namespace {

/** In pieces of that size. */
QList<LineReader::Line> linesOf(const QByteArray &bytes, qsizetype piece)
{
    LineReader reader;
    QList<LineReader::Line> lines;
    for (qsizetype at = 0; at < bytes.size(); at += piece)
        lines += reader.add(QByteArrayView(bytes).sliced(at, std::min(piece, bytes.size() - at)));
    return lines;
}

/** It is sent as one sound line. */
void checkError(const QJsonValue &id, const RequestError &error)
{
    check(!error.code.isEmpty() && !error.text.isEmpty(), "an error says what is wrong");
    const Fields line{{"id"_L1, jsonOfId(id)}, {"error"_L1, jsonOf(error)}};
    const QByteArray text = safeJson(QString::fromUtf8(Json(line).line())).toUtf8();
    check(!text.contains('\n') && !text.contains('\0'), "an error is one line");
    const QJsonObject read = QJsonDocument::fromJson(text).object();
    check(read["id"_L1] == (id.isUndefined() ? QJsonValue() : id), "an id comes back as it is");
    check(read["error"_L1]["code"_L1] == error.code, "an error can be read");
}

void checkRequest(const QByteArray &line)
{
    Request request;
    try {
        request.read(line);
        check(bool(request.work), "a request can be carried out");
        check(!request.id.isNull(), "a request has an id");
    } catch (const RequestError &error) {
        checkError(request.id, error);
    }
}

} // namespace

/** The size of the pieces, then what comes. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Input input(bytes, size);
    const qsizetype piece = input.byte() + 1;
    const QByteArray text = input.rest();
    const auto lines = linesOf(text, piece);
    const auto atOnce = linesOf(text, std::max<qsizetype>(text.size(), 1));
    check(lines.size() == atOnce.size(), "the same lines in pieces as at once");
    for (qsizetype i = 0; i < lines.size(); ++i) {
        check(lines[i].bytes == atOnce[i].bytes, "a line is the same in pieces");
        checkRequest(lines[i].bytes);
    }
    checkRequest(text);
    return 0;
}
