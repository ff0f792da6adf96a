// SPDX-License-Identifier: MIT
// Texts of strangers on their way to a terminal or into a document.
#include "fuzz.h"
#include "outlets.h"

#include <QtCore/qjsonarray.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>

#include <varda/vardadata.h>

#include "output/safetext.h"
#include "output/tables.h"
#include "output/terminal.h"
#include "output/text.h"
#include "run/failure.h"

using namespace Qt::StringLiterals;

namespace {

/** As a computer sends it, as the system tells a name, and as anything else. */
QString textFrom(Input &input)
{
    const int kind = input.byte() % 3;
    const QByteArray bytes = input.bytes(input.byte());
    switch (kind) {
    case 0:
        return QString::fromUtf8(bytes);
    case 1:
        return QString::fromLatin1(bytes);
    default:
        break;
    }
    QString units;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        units += QChar(char16_t(std::uint8_t(bytes[i]) << 8 | std::uint8_t(bytes[i + 1])));
    return units;
}

bool isValid(const QString &text)
{
    return QString::fromUtf8(text.toUtf8()) == text;
}

/** A part of a name, and that of no folder. */
void checkFileName(const QString &text)
{
    const QString name = safeFileName(text);
    checkLine(name);
    check(!name.contains(u'/') && !name.contains(u'\\') && !name.contains(u'.')
              && !name.contains(u':') && name.toUtf8().size() <= 200,
          "a file made of a stranger's text stays in its folder");
}

void checkTable(const QString &first, const QString &second)
{
    Table table;
    table.add(u"Owner"_s, safeText(first));
    table.add(u"Name"_s, safeText(second));
    check(table.text().count(u'\n') == 2, "a stranger's text adds no line to a table");
    checkTerminal(table.text());

    Columns columns({{u"INDEX"_s}, {u"NAME"_s, Columns::Side::Left}});
    columns.add({safeText(first), safeText(second)});
    check(columns.text().count(u'\n') == 2, "a stranger's text adds no row to a table");
    checkTerminal(columns.text());
}

void checkPrinted(const QString &first, const QString &second)
{
    Printed printed;
    printError({ExitCode::JobFailed, first, second});
    print(safeText(first) + u'\n');
    const QString text = QString::fromUtf8(printed.bytes());
    checkTerminal(text);
    // A command that ends without a word has nothing to advise either.
    const int lines = first.isEmpty() ? 1 : second.isEmpty() ? 2 : 3;
    check(text.count(u'\n') == lines, "a message stays on its lines");
}

void checkJson(const QString &first, const QString &second)
{
    const QJsonObject read = checkDocument({{"owner"_L1, first},
                                            {"layouts"_L1, std::vector<Json>{first, second}},
                                            {"device"_L1, Fields{{"name"_L1, second}}}});
    check(read.keys() == QStringList({u"device"_s, u"layouts"_s, u"owner"_s}),
          "a text adds no member to a document");
    const QJsonArray layouts = read["layouts"_L1].toArray();
    check(layouts.size() == 2, "a text adds no element to a list");
    if (!isValid(first) || !isValid(second))
        return;
    check(read["owner"_L1].toString() == first && layouts[0].toString() == first
              && layouts[1].toString() == second
              && read["device"_L1]["name"_L1].toString() == second,
          "a text comes back from a document as it was");
}

/** A list that is printed while it grows. */
void checkGrowing(const QString &first, const QString &second)
{
    Printed printed;
    {
        GrowingDocument document({{"owner"_L1, first}}, "names"_L1);
        document.add(second);
        document.add(first);
    }
    const QByteArray bytes = printed.bytes();
    checkTerminal(QString::fromUtf8(bytes));
    const QJsonObject read = QJsonDocument::fromJson(bytes).object();
    check(read["names"_L1].toArray().size() == 2, "a document that grows is sound JSON");
}

void checkLog(const QByteArray &bytes)
{
    VardaData::Payload payload{};
    std::copy_n(bytes.begin(), std::min<qsizetype>(bytes.size(), 511), payload.begin() + 1);
    VardaData data;
    data.processSyslog(payload);
    data.processOwner(payload);
    check(data.syslog.endsWith(u'\n'), "a line of the log has an end");
    const auto lines = data.syslog.split(u'\n');
    for (const QString &line : lines)
        checkLine(safeText(line));
    checkLine(safeText(data.owner));
}

} // namespace

/** Two texts, and a line of the log. */
int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Input input(bytes, size);
    const QString first = textFrom(input);
    const QString second = textFrom(input);
    checkLine(safeText(first));
    check(safeText(safeText(first)) == safeText(first), "what is safe stays as it is");
    checkLine(safeText(versionText(first)));
    checkFileName(first);
    checkTable(first, second);
    checkPrinted(first, second);
    checkJson(first, second);
    checkGrowing(first, second);
    checkLog(input.rest());
    return 0;
}
