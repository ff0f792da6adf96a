// SPDX-License-Identifier: MIT
// varda-faults settings                    the names of all settings
// varda-faults SETTING [OPTIONS]           runs the cases of one
//   --filter TEXT      those whose name has it
//   --every N          one in N of them
//   --after NAME       from behind this one on
//   --list             only their names
// One line a case: "run NAME" before it, "ok NAME" or "FAIL NAME: WHY" after it.
#include <QtCore/qcommandlineparser.h>
#include <QtCore/qcoreapplication.h>
#include <QtCore/qloggingcategory.h>

#include <cstdio>

#include "case.h"
#include "jobcase.h"
#include "matrix.h"
#include "world.h"

using namespace Qt::StringLiterals;

namespace {

void say(const QString &text)
{
    std::puts(qPrintable(text));
    std::fflush(stdout);
}

struct Options {
    QString filter;
    uint every = 1;
    QString after;
    bool list = false;
};

/** The same on every machine and in every run, and without a pattern. */
uint number(const QString &name)
{
    uint hash = 2166136261U; // FNV-1a
    for (const QChar c : name)
        hash = (hash ^ c.unicode()) * 16777619U;
    return hash ^ hash >> 15;
}

bool isMeant(const QString &name, const Options &options)
{
    return name.contains(options.filter) && number(name) % options.every == 0;
}

QList<Case> casesOf(CaseRunner & /*runner*/, const Setting &setting, const Healthy &healthy)
{
    return allCases(setting, healthy);
}

QList<Case> casesOf(JobRunner &runner, const Setting & /*setting*/, const Healthy &healthy)
{
    return runner.cases(healthy);
}

template <typename Runner> int runSetting(const Setting &setting, const Options &options)
{
    World world;
    Runner runner(world, setting);
    QString error;
    const std::optional<Healthy> healthy = runner.healthy(&error);
    if (!healthy) {
        say(u"FAIL %1/healthy: %2"_s.arg(setting.name(), error));
        return 1;
    }
    bool reached = options.after.isEmpty();
    bool allGood = true;
    const QList<Case> cases = casesOf(runner, setting, *healthy);
    for (const Case &each : cases) {
        const QString name = setting.name() + u'/' + each.name;
        if (reached && isMeant(name, options)) {
            say(u"run "_s + name);
            if (options.list)
                continue;
            constexpr uint kWatched = 8;
            const QStringList wrong = runner.run(each, *healthy,
                                                 number(name) / options.every % kWatched == 0);
            say(wrong.isEmpty() ? u"ok "_s + name
                                : u"FAIL %1: %2"_s.arg(name, wrong.join(u"; "_s)));
            allGood = allGood && wrong.isEmpty();
        }
        reached = reached || name == options.after;
    }
    return allGood ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    // What the library notes of failures that are meant would hide what is not.
    QLoggingCategory::setFilterRules(u"varda.*=false\nqt.bluetooth*=false"_s);
    QCommandLineParser parser;
    const QCommandLineOption filter(u"filter"_s, {}, u"TEXT"_s);
    const QCommandLineOption every(u"every"_s, {}, u"N"_s, u"1"_s);
    const QCommandLineOption after(u"after"_s, {}, u"NAME"_s);
    const QCommandLineOption list(u"list"_s);
    parser.addOptions({filter, every, after, list});
    parser.process(app);
    const Options options{parser.value(filter), qMax(1U, parser.value(every).toUInt()),
                          parser.value(after), parser.isSet(list)};
    const QString wanted = parser.positionalArguments().value(0);

    const QList<Setting> settings = allSettings(Layer::Session) + allSettings(Layer::Jobs);
    for (const Setting &setting : settings) {
        if (wanted == "settings"_L1)
            say(setting.name());
        else if (wanted == setting.name())
            return setting.ofJobs() ? runSetting<JobRunner>(setting, options)
                                    : runSetting<CaseRunner>(setting, options);
    }
    return wanted == "settings"_L1 ? 0 : 2;
}
