// SPDX-License-Identifier: MIT
#include "run/store.h"

#include "run/interrupt.h"

#include <QtCore/qeventloop.h>
#include <QtCore/qfileinfo.h>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

Failure failureOf(const LogbookError &error)
{
    return {ExitCode::StoreFailed, error.text, error.remedy};
}

/** @param ask  gets a context, and what is to be called with the answer */
template <typename Answer, typename Ask> Answer answerTo(Ask ask)
{
    QEventLoop loop;
    std::optional<Answer> answer;
    ask(&loop, [&](const Answer &each) {
        answer = each;
        loop.quit();
    });
    if (const Interrupt *interrupt = Interrupt::instance())
        QObject::connect(interrupt, &Interrupt::interrupted, &loop, &QEventLoop::quit);
    if (Interrupt::number() == 0)
        loop.exec();
    if (Interrupt::number() != 0 || !answer)
        throw Interrupt::failure();
    return *answer;
}

template <typename T, typename Ask> T valueOf(Ask ask)
{
    const auto result = answerTo<LogbookResult<T>>(ask);
    if (result.error)
        throw failureOf(result.error);
    return result.value;
}

} // namespace

Store::Store(const QString &file, Use use)
{
    if (use == Use::Read && !QFileInfo::exists(file)) {
        throw Failure{ExitCode::StoreFailed,
                      u"there are no saved dives: no file \"%1\""_s.arg(file),
                      u"\"varda sync\" saves the dives of a computer, \"varda import\" those of a "
                      "file."_s};
    }
    const auto error = answerTo<LogbookError>(
        [&](const QObject *context, const auto &done) { m_logbook.open(file, context, done); });
    if (error)
        throw failureOf(error);
}

QList<LogbookComputer> Store::computers()
{
    return valueOf<QList<LogbookComputer>>(
        [this](const QObject *context, const auto &done) { m_logbook.computers(context, done); });
}

QList<LogbookEntry> Store::dives(const LogbookQuery &query)
{
    return valueOf<QList<LogbookEntry>>(
        [&](const QObject *context, const auto &done) { m_logbook.dives(query, context, done); });
}

LogbookDive Store::dive(qint64 id)
{
    return valueOf<LogbookDive>(
        [&](const QObject *context, const auto &done) { m_logbook.dive(id, context, done); });
}

LogbookStore::Added Store::add(const Dive &dive)
{
    LogbookComputer computer;
    computer.identity.serialNumber = dive.serialNumber;
    computer.identity.model = dive.model;
    LogbookDive added;
    added.dive = dive;
    return valueOf<LogbookStore::Added>([&](const QObject *context, const auto &done) {
        m_logbook.addDive(computer, added, context, done);
    });
}
