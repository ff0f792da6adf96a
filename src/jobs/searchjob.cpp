// SPDX-License-Identifier: MIT
#include "jobs/searchjob_p.h"

#include <algorithm>

#include <varda/vardacomputer.h>

using Reason = VardaJob::Reason;

SearchJobPrivate::SearchJobPrivate(std::chrono::seconds searchTime, bool everything)
    : time(searchTime), allDevices(everything)
{
    name = QStringLiteral("search");
}

void SearchJobPrivate::start()
{
    m_search = std::make_unique<DeviceSearch>();
    m_watch = std::make_unique<BluetoothWatch>();
    QObject::connect(m_search.get(), &DeviceSearch::seen, q,
                     [this](const BleDeviceInfo &device) { onSeen(device); });
    QObject::connect(m_search.get(), &DeviceSearch::finished, q, [this] { finish({}); });
    QObject::connect(m_search.get(), &DeviceSearch::failed, q,
                     [this](DeviceSearch::Failure failure, const QString &) {
                         m_watch->findOut([this, failure](Reason reason) {
                             finish({VardaJob::NoBluetooth,
                                     reason == Reason::None ? failureReason(failure) : reason});
                         });
                     });
    QObject::connect(m_watch.get(), &BluetoothWatch::lost, q,
                     [this](Reason reason) { finish({VardaJob::NoBluetooth, reason}); });
    setState(VardaJob::Running);
    m_watch->check([this](Reason reason) {
        if (isEnding())
            return;
        if (reason != Reason::None)
            finish({VardaJob::NoBluetooth, reason});
        else
            m_search->start(time);
    });
}

void SearchJobPrivate::onSeen(const BleDeviceInfo &device)
{
    const QString called = device.name();
    if (called.isEmpty() || (!allDevices && !VardaComputer::isComputerName(called)))
        return;
    auto *const job = static_cast<SearchJob *>(q);
    const auto it = std::find_if(devices.begin(), devices.end(), [&](const BleDeviceInfo &each) {
        return each.address() == device.address();
    });
    if (it == devices.end()) {
        devices.append(device);
        Q_EMIT job->deviceFound(device);
    } else if (it->name() != device.name() || it->rssi() != device.rssi()) {
        *it = device;
        Q_EMIT job->deviceChanged(device);
    }
}

void SearchJobPrivate::finish(const JobEnd &how)
{
    if (isEnding())
        return;
    if (m_search)
        m_search->stop();
    end(how, QVariant::fromValue(devices));
}

namespace {

SearchJobPrivate &privateOf(const SearchJob &job)
{
    return static_cast<SearchJobPrivate &>(VardaJobPrivate::of(job));
}

} // namespace

SearchJob::SearchJob(VardaJobPrivate *job) : VardaJob(job)
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (!privateOf(*this).isEnding())
                privateOf(*this).start();
        },
        Qt::QueuedConnection);
}

QList<BleDeviceInfo> SearchJob::devices() const
{
    return privateOf(*this).devices;
}

void SearchJob::finishNow()
{
    privateOf(*this).finish({});
}

void SearchJob::stop(bool /*atOnce*/)
{
    privateOf(*this).finish({Cancelled, Reason::ByCaller});
}
