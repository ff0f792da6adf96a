// SPDX-License-Identifier: MIT
#include "jobs/link/computerlink_p.h"

#include <algorithm>
#include <chrono>

#include "jobs/link/claims_p.h"
#include "session/computername_p.h"

using namespace std::chrono_literals;
using Reason = VardaJob::Reason;

namespace {

constexpr auto kSearchTime = 30s;
/** Others may be in reach whose advertisements come later. */
constexpr auto kOthersTime = 3s;

} // namespace

void ComputerLink::search()
{
    if (m_wish.device.isValid() && Claims::isOthers(m_wish.device.address(), this)) {
        post([this] { fail({VardaJob::InUse, Reason::OtherComputer}); });
        return;
    }
    m_candidates.clear();
    m_othersSeen = false;
    m_others.clear();
    m_search.start(kSearchTime);
}

void ComputerLink::onSeen(const BleDeviceInfo &device)
{
    const bool wanted = m_wish.device.isValid() ? sameAddress(device, m_wish.device)
                                                : isComputerName(device.name());
    const auto known = [&device](const BleDeviceInfo &each) { return sameAddress(each, device); };
    if (m_tap && !wanted)
        m_others.insert(device.address());
    if (!wanted || std::any_of(m_candidates.cbegin(), m_candidates.cend(), known))
        return;

    const bool others = Claims::isOthers(device.address(), this);
    if (others)
        m_othersSeen = true;
    else
        m_candidates.append(device);
    if (m_wish.device.isValid() || (!others && !m_wish.onlyOne)) {
        post([this] { choose(); });
    } else if (!m_timer.isActive()) {
        connect(&m_timer, &QTimer::timeout, this, &ComputerLink::choose);
        m_timer.start(kOthersTime);
    }
}

void ComputerLink::onSearchFailed(DeviceSearch::Failure failure)
{
    m_watch.findOut([this, failure](Reason reason) {
        // A service that is on its way back fails searches too.
        onBluetoothKnown(reason == Reason::None ? failureReason(failure) : reason);
    });
}

void ComputerLink::choose()
{
    stopTrying();
    if (m_tap)
        m_tap->othersSeen(int(m_others.size()));
    if (m_candidates.isEmpty() && m_othersSeen) {
        fail({VardaJob::InUse, Reason::OtherComputer});
    } else if (m_candidates.isEmpty()) {
        begin(); // who waits for it has a limit
    } else if (m_wish.onlyOne && !m_wish.device.isValid()
               && (m_candidates.size() > 1 || m_othersSeen)) {
        fail({VardaJob::Ambiguous, Reason::ManyInReach});
    } else {
        connectTo(m_candidates.constFirst());
    }
}
