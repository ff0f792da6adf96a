// SPDX-License-Identifier: MIT
#include "output/terminal.h"

#include "output/displaywidth.h"
#include "output/safetext.h"
#include "output/tables.h"
#include "run/failure.h"
#include "run/interrupt.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qloggingcategory.h>

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsualWidth = 80;
constexpr int kIndent = 4;
constexpr int kElementIndent = 2 * kIndent;

QString shownStatus;      // as it stands on the terminal
QElapsedTimer sinceStart; // for the diagnostics
int resultError = 0;      // why not all of the result was written, the system's number
bool resultErrorReported = false;

/** What of it people see here. */
QString visible(const QString &text)
{
    if (usesUtf8())
        return text;
    QString ascii;
    ascii.reserve(text.size());
    for (const char32_t character : text.toUcs4())
        ascii += character < 0x80 ? QChar(char16_t(character)) : QChar(u'?');
    return ascii;
}

QByteArray encoded(const QString &text)
{
    return visible(text).toUtf8();
}

bool write(std::FILE *stream, const QByteArray &bytes)
{
    const auto size = std::size_t(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, stream) == size;
}

/** flushOutput() reports how it went; what would follow a gap is left out. */
void writeResult(const QByteArray &bytes)
{
    if (resultError == 0 && !write(stdout, bytes))
        resultError = errno;
}

/** A terminal that obeys escape sequences. */
bool isTerminal(int descriptor)
{
    return ::isatty(descriptor) != 0 && qgetenv("TERM") != QByteArrayView("dumb");
}

bool hasStatusLine()
{
    static const bool kHas = isTerminal(STDERR_FILENO);
    return kHas;
}

/** See no-color.org. */
bool hasColours(int descriptor)
{
    return isTerminal(descriptor) && qEnvironmentVariableIsEmpty("NO_COLOR");
}

/** Nothing where it is no terminal. */
winsize sizeOf(int descriptor)
{
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0)
        return {};
    return size;
}

/** What the user wishes; 0 for none. */
int fromEnvironment(const char *name)
{
    constexpr int kMost = 10000;
    return std::clamp(qEnvironmentVariableIntValue(name), 0, kMost);
}

enum class Colour { Red = 31, Yellow = 33 };

/** Behind "varda: ", without a word that is broken by the terminal's edge. */
QByteArray messageLine(const QString &text)
{
    constexpr int kBehind = 7; // of "varda: "
    const int width = sizeOf(STDERR_FILENO).ws_col;
    const QString safe = safeText(text);
    return encoded((width > 0 ? folded(safe.split(u' '), u" "_s, kBehind, width) : safe) + u'\n');
}

/** The first line of a message. */
void writeMessage(Colour colour, const QString &text)
{
    clearStatus();
    const QByteArray code = QByteArray::number(int(colour));
    write(stderr, hasColours(STDERR_FILENO) ? "\x1b[1;" + code + "mvarda:\x1b[m " : "varda: ");
    write(stderr, messageLine(text));
}

/** JSON is UTF-8 in every locale. */
void writeJson(const QByteArray &json)
{
    clearStatus();
    writeResult(safeJson(QString::fromUtf8(json)).toUtf8());
}

void drawStatus(const QString &text)
{
    write(stderr, "\r\x1b[K" + encoded(text));
    std::fflush(stderr);
}

void onDiagnostic(QtMsgType /*type*/, const QMessageLogContext &context, const QString &message)
{
    const QString status = shownStatus;
    clearStatus();
    const auto seconds = double(sinceStart.elapsed()) / 1000.0;
    write(stderr, encoded(u"%1 %2: %3\n"_s.arg(seconds, 7, 'f', 3)
                              .arg(QLatin1StringView(context.category), safeText(message))));
    std::fflush(stderr);
    showStatus(status);
}

} // namespace

TextStyle outputStyle()
{
    TextStyle style{.utf8 = usesUtf8(), .bold = hasColours(STDOUT_FILENO)};
    if (const int width = fromEnvironment("COLUMNS"); width > 0)
        style.width = width;
    else if (const auto size = sizeOf(STDOUT_FILENO); size.ws_col > 0)
        style.width = size.ws_col;
    return style;
}

int outputHeight()
{
    const int height = fromEnvironment("LINES");
    return height > 0 ? height : sizeOf(STDOUT_FILENO).ws_row;
}

bool usesUtf8()
{
    static const bool kUses = [] {
        for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
            const QByteArray value = qgetenv(name).toLower();
            if (!value.isEmpty())
                return value.contains("utf-8") || value.contains("utf8");
        }
        return false;
    }();
    return kUses;
}

void print(const QString &text)
{
    clearStatus();
    writeResult(encoded(text));
}

void printBytes(const QByteArray &bytes)
{
    clearStatus();
    writeResult(bytes);
}

void print(const Fields &document)
{
    GrowingDocument(document).end();
}

GrowingDocument::GrowingDocument(const Fields &members)
{
    writeJson("{\n" + Json::lines(members, kIndent));
}

GrowingDocument::GrowingDocument(const Fields &members, QLatin1StringView list)
    : GrowingDocument(members)
{
    m_hasList = true;
    writeJson(",\n" + QByteArray(kIndent, ' ') + '"' + list.data() + "\": [");
}

GrowingDocument::~GrowingDocument()
{
    end();
}

void GrowingDocument::add(const Json &element)
{
    writeJson((m_isEmpty ? "\n" : ",\n") + QByteArray(kElementIndent, ' ')
              + element.text(kElementIndent));
    m_isEmpty = false;
}

void GrowingDocument::end()
{
    if (m_ended)
        return;
    m_ended = true;
    if (m_hasList)
        writeJson(m_isEmpty ? QByteArray("]") : '\n' + QByteArray(kIndent, ' ') + ']');
    writeJson("\n}\n");
}

void flushOutput()
{
    if (resultError == 0 && std::fflush(stdout) != 0)
        resultError = errno;
    if (resultError == 0 || std::exchange(resultErrorReported, true))
        return;
    if (resultError == EPIPE) // as it ends others, who do not catch the signal
        throw Failure{ExitCode(int(ExitCode::Signal) + SIGPIPE), {}, {}};
    if (resultError == EINTR && Interrupt::number() != 0)
        throw Interrupt::failure();
    throw Failure{ExitCode::JobFailed,
                  u"the result could not be written: "_s + qt_error_string(resultError),
                  {}};
}

void printError(const Failure &failure)
{
    if (failure.what.isEmpty())
        return clearStatus();
    writeMessage(Colour::Red, failure.what);
    if (!failure.advice.isEmpty())
        write(stderr, "       " + messageLine(failure.advice));
    for (const QString &each : failure.choices)
        write(stderr, "       " + messageLine(each));
}

void printWarning(const QString &text)
{
    writeMessage(Colour::Yellow, text);
}

void printHint(const QString &text)
{
    clearStatus();
    write(stderr, encoded(text));
}

void printQuestion(const QString &question, const QStringList &choices)
{
    clearStatus();
    for (const QString &each : choices)
        write(stderr, encoded(safeText(each) + u'\n'));
    write(stderr, encoded(safeText(question)));
    std::fflush(stderr);
}

int statusWidth()
{
    // Whatever is wished for, a line that wraps could not be erased.
    const int width = sizeOf(STDERR_FILENO).ws_col;
    return (width > 0 ? width : kUsualWidth) - 1;
}

void showStatus(const QString &text)
{
    if (!hasStatusLine() || text.isEmpty())
        return;
    shownStatus = clipped(visible(safeText(text)), statusWidth());
    drawStatus(shownStatus);
}

void clearStatus()
{
    if (shownStatus.isEmpty())
        return;
    shownStatus.clear();
    drawStatus({});
}

void routeDiagnostics(bool verbose)
{
    sinceStart.start();
    qInstallMessageHandler(onDiagnostic);
    QLoggingCategory::setFilterRules(verbose ? u"varda.*=true"_s : u"*=false"_s);
}
