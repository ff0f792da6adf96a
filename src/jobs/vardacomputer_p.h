// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <utility>

#include <varda/vardacomputer.h>

#include "jobs/jobengine_p.h"
#include "jobs/work/readings_p.h"

class JobHome;

class VardaComputerPrivate
{
public:
    explicit VardaComputerPrivate(VardaComputer *computer)
        : q(computer), engine(std::make_unique<JobEngine>(computer))
    {
    }
    ~VardaComputerPrivate();
    Q_DISABLE_COPY_MOVE(VardaComputerPrivate)

    template <typename Job> Job *adopt(std::unique_ptr<VardaJobPrivate> d)
    {
        Job *const job = create<Job>(d.release());
        takeIn(job);
        return job;
    }

    template <typename Job> Job *queue(QString name, std::unique_ptr<Work> work)
    {
        Job *const job = adopt<Job>(
            std::make_unique<VardaJobPrivate>(engine.get(), std::move(name), std::move(work)));
        engine->add(job);
        return job;
    }

    template <typename Job = VardaJob>
    Job *list(const QString &name, QList<Request> requests, ListWork::Take take,
              bool needsIdentity = false, bool isLong = false)
    {
        auto work = std::make_unique<ListWork>(std::move(requests), std::move(take));
        work->needsIdentity = needsIdentity;
        work->isLong = isLong;
        return queue<Job>(name, std::move(work));
    }

    template <typename Job = VardaJob>
    Job *list(const QString &name, const Request &request, ListWork::Take take,
              bool needsIdentity = false, bool isLong = false)
    {
        QList<Request> requests;
        requests.append(request);
        return list<Job>(name, std::move(requests), std::move(take), needsIdentity, isLong);
    }

    template <typename Job> static Job *create(VardaJobPrivate *d) { return new Job(d); }

    void takeIn(VardaJob *job);

    VardaComputer *q;
    std::unique_ptr<JobEngine> engine;
    JobHome *home = nullptr;
};

template <> VardaJob *VardaComputerPrivate::create<VardaJob>(VardaJobPrivate *d);
