// SPDX-License-Identifier: MIT
#include "terminal.h"

#include "failure.h"
#include "interrupt.h"
#include "text.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qloggingcategory.h>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int kUsualWidth = 80;
constexpr int kIndent = 4;
constexpr int kElementIndent = 2 * kIndent;

QString shownStatus;         // as it stands on the terminal
QElapsedTimer sinceTheStart; // for the diagnostics
int resultError = 0;         // why not all of the result was written, the system's number
bool resultErrorTold = false;

QByteArray encoded(const QString &text)
{
    if (speaksUtf8())
        return text.toUtf8();
    QByteArray ascii;
    ascii.reserve(text.size());
    for (const char32_t character : text.toUcs4())
        ascii += character < 0x80 ? char(character) : '?';
    return ascii;
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

bool hasStatusLine()
{
    static const bool kHas = ::isatty(STDERR_FILENO) != 0
                             && qgetenv("TERM") != QByteArrayView("dumb");
    return kHas;
}

int widthOf(int descriptor)
{
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kUsualWidth;
    return size.ws_col;
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
    const auto seconds = double(sinceTheStart.elapsed()) / 1000.0;
    write(stderr, encoded(u"%1 %2: %3\n"_s.arg(seconds, 7, 'f', 3)
                              .arg(QLatin1StringView(context.category), safeText(message))));
    std::fflush(stderr);
    showStatus(status);
}

} // namespace

int outputWidth()
{
    return widthOf(STDOUT_FILENO);
}

bool speaksUtf8()
{
    static const bool kSpeaks = [] {
        for (const char *name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
            const QByteArray value = qgetenv(name).toLower();
            if (!value.isEmpty())
                return value.contains("utf-8") || value.contains("utf8");
        }
        return false;
    }();
    return kSpeaks;
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
    if (resultError == 0 || std::exchange(resultErrorTold, true))
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
    clearStatus();
    if (failure.what.isEmpty())
        return;
    QString text = u"varda: "_s + safeText(failure.what) + u'\n';
    if (!failure.advice.isEmpty())
        text += u"       "_s + safeText(failure.advice) + u'\n';
    for (const QString &each : failure.choices)
        text += u"       "_s + safeText(each) + u'\n';
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

void showStatus(const QString &text)
{
    if (!hasStatusLine() || text.isEmpty())
        return;
    // A line that wraps could not be erased.
    shownStatus = safeText(text).left(widthOf(STDERR_FILENO) - 1);
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
    sinceTheStart.start();
    qInstallMessageHandler(onDiagnostic);
    QLoggingCategory::setFilterRules(verbose ? u"varda.*=true"_s : u"*=false"_s);
}
