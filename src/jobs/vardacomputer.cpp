// SPDX-License-Identifier: MIT
#include <varda/vardacomputer.h>

#include "jobs/jobhome_p.h"
#include "jobs/searchjob_p.h"
#include "jobs/vardacomputer_p.h"
#include "session/computername_p.h"

using namespace Qt::StringLiterals;
using Reason = VardaJob::Reason;

namespace {

/** A job without a face of its own. */
class PlainJob final : public VardaJob
{
public:
    explicit PlainJob(VardaJobPrivate *job) : VardaJob(job) { }
};

} // namespace

template <> VardaJob *VardaComputerPrivate::create<VardaJob>(VardaJobPrivate *d)
{
    return new PlainJob(d);
}

VardaComputerPrivate::~VardaComputerPrivate()
{
    engine.reset(); // ends the jobs
    if (!home)
        return;
    const auto searches = home->findChildren<SearchJob *>(Qt::FindDirectChildrenOnly);
    for (SearchJob *search : searches)
        static_cast<SearchJobPrivate &>(VardaJobPrivate::of(*search))
            .finish({VardaJob::Cancelled, Reason::ComputerDeleted});
    home->leave();
}

void VardaComputerPrivate::takeIn(VardaJob *job)
{
    if (!home) // not before: the computer may have been moved since it was made
        home = std::make_unique<JobHome>().release();
    job->setParent(home);
}

VardaComputer::VardaComputer(QObject *parent)
    : QObject(parent), d(std::make_unique<VardaComputerPrivate>(this))
{
    qRegisterMetaType<BleDeviceInfo>("BleDeviceInfo");
    connect(d->engine.get(), &JobEngine::stateChanged, this, &VardaComputer::stateChanged);
    connect(d->engine.get(), &JobEngine::deviceChanged, this, &VardaComputer::deviceChanged);
    connect(d->engine.get(), &JobEngine::currentJobChanged, this,
            &VardaComputer::currentJobChanged);
    connect(d->engine.get(), &JobEngine::linkLost, this, &VardaComputer::linkLost);
    connect(d->engine.get(), &JobEngine::traceFailed, this, &VardaComputer::traceFailed);
}

VardaComputer::~VardaComputer()
{
    d->engine->disconnect(this);
}

VardaComputer::State VardaComputer::state() const
{
    return d->engine->state();
}

BleDeviceInfo VardaComputer::device() const
{
    return d->engine->device();
}

void VardaComputer::setDevice(const BleDeviceInfo &device)
{
    d->engine->setDevice(device);
}

void VardaComputer::setLinkMode(std::optional<BleMode> mode)
{
    d->engine->setMode(mode);
}

void VardaComputer::setLinger(std::chrono::milliseconds time)
{
    d->engine->setLinger(time);
}

void VardaComputer::setTrace(QIODevice *device, VardaTrace::Content content)
{
    d->engine->setTrace(device, content == VardaTrace::Redacted);
}

int VardaComputer::mtu() const
{
    return qMax(0, d->engine->mtu());
}

VardaIdentity VardaComputer::identity() const
{
    return d->engine->identity();
}

bool VardaComputer::isComputerName(const QString &name)
{
    return ::isComputerName(name);
}

VardaJob *VardaComputer::currentJob() const
{
    return d->engine->currentJob();
}

QList<VardaJob *> VardaComputer::waitingJobs() const
{
    return d->engine->waitingJobs();
}

SearchJob *VardaComputer::search(std::chrono::seconds time, bool allDevices)
{
    return d->adopt<SearchJob>(std::make_unique<SearchJobPrivate>(time, allDevices));
}

VardaJob *VardaComputer::connectToComputer()
{
    return d->list(u"connection"_s, QList<Request>(), ListWork::nothing);
}

VardaJob *VardaComputer::connectToOnlyComputer()
{
    auto work = std::make_unique<ListWork>(QList<Request>(), ListWork::nothing);
    work->writes = true;
    return d->queue<VardaJob>(u"connection"_s, std::move(work));
}

VardaJob *VardaComputer::disconnectFromComputer()
{
    auto *const job = d->adopt<VardaJob>(
        std::make_unique<VardaJobPrivate>(d->engine.get(), u"disconnection"_s, nullptr));
    d->engine->disconnectLink(job, Reason::ByDisconnect);
    return job;
}
