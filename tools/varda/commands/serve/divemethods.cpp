// SPDX-License-Identifier: MIT
#include "commands/dives/numbergaps.h"
#include "commands/serve/methods.h"
#include "commands/serve/parameters.h"
#include "commands/serve/requesterror.h"
#include "commands/serve/task.h"
#include "output/documents.h"
#include "output/records.h"

#include <varda/logbookstore.h>
#include <varda/syncjob.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

using Numbers = QList<std::uint16_t>;

/** Dives that come one after the other, for their events and for the result. */
struct DivesRead {
    bool collect = true;
    std::vector<Json> dives;
};

void sendDamaged(Task &task, std::uint16_t number, VardaJob::Error kind, const QString &text)
{
    task.sendEvent("damaged"_L1,
                   {{"diveNumber"_L1, number},
                    {"error"_L1, Fields{{"kind"_L1, keyOf(kind)}, {"text"_L1, text}}}});
}

/** @param head  the result without the dives */
void readDives(Task &task, DownloadJob *job, bool collect, const std::function<Fields()> &head)
{
    const auto read = std::make_shared<DivesRead>();
    read->collect = collect;
    QObject::connect(job, &DownloadJob::diveRead, &task, [&task, read](const Dive &dive) {
        const Json json = fieldsOf(dive);
        task.sendEvent("dive"_L1, {{"dive"_L1, json}});
        if (read->collect)
            read->dives.push_back(json);
    });
    QObject::connect(job, &DownloadJob::diveDamaged, &task,
                     [&task](std::uint16_t number, VardaJob::Error kind, const QString &text) {
                         sendDamaged(task, number, kind, text);
                     });
    task.follow(job, [&task, job, read, head] {
        Fields document = head();
        if (!job->damaged().isEmpty())
            document.emplace_back("damaged"_L1, listOf(job->damaged()));
        if (read->collect)
            document.emplace_back("dives"_L1, std::move(read->dives));
        task.succeedOnDevice(document);
    });
}

/** @throws RequestError  if one of them is not in the logbook */
void requireAll(const Numbers &numbers, const QList<TidemarDiveHeader> &headers)
{
    for (const std::uint16_t number : numbers) {
        if (std::ranges::find(headers, number, &TidemarDiveHeader::diveNumber) == headers.end()) {
            throw RequestError{.code = u"NoSuchDive"_s,
                               .text = u"there is no dive %1 in the logbook"_s.arg(number),
                               .kind = VardaJob::Refused};
        }
    }
}

// sync

void readIntoStore(Task &task, LogbookStore &store)
{
    SyncJob *const job = syncLogbook(task.computer(), store);
    task.prepare(*job->download());
    const auto stored = std::make_shared<std::vector<Json>>();
    QObject::connect(job, &SyncJob::diveStored, &task,
                     [&task, stored](qint64 id, const Dive &dive) {
                         stored->emplace_back(documents::storedDive(id, dive));
                         task.sendEvent("stored"_L1, {{"dive"_L1, stored->back()}});
                     });
    QObject::connect(job, &SyncJob::diveDamaged, &task,
                     [&task](std::uint16_t number, VardaJob::Error kind, const QString &text) {
                         sendDamaged(task, number, kind, text);
                     });
    task.follow(job, [&task, &store, job, stored] {
        const documents::Synchronised done{.file = store.file(),
                                           .computer = job->computerId(),
                                           .added = job->added(),
                                           .known = job->known(),
                                           .damaged = job->damaged(),
                                           .dives = *stored};
        task.succeedOnDevice(documents::synchronised(task.computer().identity(), done));
    });
}

/** Has its place in the queue at once: what is asked for behind it may be to delete the dives. */
void synchronise(Task &task, const QString &file)
{
    auto *const store = new LogbookStore(&task);
    const bool isSimulated = task.options().simulates();
    store->open(file.isEmpty() ? LogbookStore::defaultFile(isSimulated) : file, &task,
                [&task](const LogbookError &error) {
                    if (!error)
                        return;
                    task.giveUp({.code = u"StoreFailed"_s,
                                 .text = error.text,
                                 .remedy = error.remedy,
                                 .kind = VardaJob::NotStored});
                });
    readIntoStore(task, *store);
}

} // namespace

Work prepareLogbook(Parameters &parameters)
{
    const Numbers known = parameters.diveNumbers("known"_L1);
    return [known](Task &task) {
        task.finishWith(task.computer().readLogbook(known),
                        [&task, known](const QList<TidemarDiveHeader> &headers) {
                            return documents::logbook(task.computer().identity(), headers,
                                                      jsonOf(gapsIn(headers, known)));
                        });
    };
}

Work prepareDive(Parameters &parameters)
{
    const Numbers numbers = parameters.diveNumbers("numbers"_L1);
    const bool collect = parameters.flagOrTrue("collect"_L1);
    if (numbers.isEmpty())
        throw RequestError{u"BadArgument"_s, u"parameter \"numbers\" is missing or empty"_s};
    return [=](Task &task) {
        DownloadJob *const job = task.computer().downloadDives();
        job->setWanted([numbers](const TidemarDiveHeader &header) {
            return std::ranges::binary_search(numbers, header.diveNumber);
        });
        QObject::connect(job, &DownloadJob::headersRead, &task,
                         [&task, numbers](const QList<TidemarDiveHeader> &wanted) {
                             task.attempt([&] { requireAll(numbers, wanted); });
                         });
        readDives(task, job, collect,
                  [&task] { return documents::dives(task.computer().identity()); });
    };
}

Work prepareDives(Parameters &parameters)
{
    const Numbers known = parameters.diveNumbers("known"_L1);
    const bool collect = parameters.flagOrTrue("collect"_L1);
    return [=](Task &task) {
        DownloadJob *const job = task.computer().downloadDives(known);
        readDives(task, job, collect, [&task, job, known] {
            return documents::dives(task.computer().identity(),
                                    jsonOf(gapsIn(job->headers(), known)));
        });
    };
}

Work prepareSync(Parameters &parameters)
{
    const QString file = parameters.fileToWrite("file"_L1);
    return [file](Task &task) { synchronise(task, file); };
}
