// SPDX-License-Identifier: MIT
#include "terminal.h"

#include "failure.h"
#include "text.h"

#include <QtCore/qelapsedtimer.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qloggingcategory.h>
#include <QtCore/qregularexpression.h>

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

QString shownStatus;         // as it stands on the terminal
QElapsedTimer sinceTheStart; // for the diagnostics

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

void write(std::FILE *stream, const QByteArray &bytes)
{
    // flushOutput() looks at how it went.
    std::ignore = std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stream);
}

bool hasStatusLine()
{
    static const bool kHas = ::isatty(STDERR_FILENO) != 0
                             && qgetenv("TERM") != QByteArrayView("dumb");
    return kHas;
}

int terminalWidth()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return 80;
    return size.ws_col;
}

void drawStatus(const QString &text)
{
    write(stderr, "\r\x1b[K" + encoded(text));
    std::fflush(stderr);
}

/** Lists of numbers on one line each; Qt gives every number its own. */
QString withNumbersInLine(const QString &json)
{
    // Inside a string there is no line feed, so nothing there looks like this.
    static const QRegularExpression kList(u"\\[\\n([-+.,0-9eE\\s]+)\\]"_s);
    QString result;
    qsizetype from = 0;
    for (auto it = kList.globalMatch(json); it.hasNext();) {
        const auto match = it.next();
        result += QStringView(json).sliced(from, match.capturedStart() - from);
        result += u'[' + match.captured(1).simplified() + u']';
        from = match.capturedEnd();
    }
    result += QStringView(json).sliced(from);
    return result;
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
    write(stdout, encoded(text));
}

void print(const QJsonObject &document)
{
    clearStatus();
    const QByteArray json = QJsonDocument(document).toJson();
    write(stdout, safeJson(withNumbersInLine(QString::fromUtf8(json))).toUtf8());
}

void flushOutput()
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        throw Failure{ExitCode::JobFailed, u"the result could not be written"_s, {}};
}

void printError(const Failure &failure)
{
    clearStatus();
    QString text = u"varda: "_s + safeText(failure.what) + u'\n';
    if (!failure.advice.isEmpty())
        text += u"       "_s + safeText(failure.advice) + u'\n';
    write(stderr, encoded(text));
}

void showStatus(const QString &text)
{
    if (!hasStatusLine() || text.isEmpty())
        return;
    // A line that wraps could not be erased.
    shownStatus = safeText(text).left(terminalWidth() - 1);
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
