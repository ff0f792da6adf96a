// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <varda/bledeviceinfo.h>
#include <varda/vardajob.h>

/** Lists the computers in reach. It does not wait in the queue, and ends when its time is up. */
class VARDA_EXPORT SearchJob final : public VardaJob
{
    Q_OBJECT
public:
    /**
     * In order of discovery, each address once, with the newest name and signal strength; value()
     * is the same list.
     */
    [[nodiscard]] QList<BleDeviceInfo> devices() const;
    /** Ends the search now, with NoError and what was found so far. */
    Q_INVOKABLE void finishNow();

Q_SIGNALS:
    void deviceFound(const BleDeviceInfo &device);
    /** A device has a new name or signal strength. */
    void deviceChanged(const BleDeviceInfo &device);

private:
    friend class VardaComputerPrivate;
    friend class SearchJobPrivate;
    explicit SearchJob(VardaJobPrivate *job);
    void stop(bool atOnce) override;
};
