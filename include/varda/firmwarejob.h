// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardajob.h>

/** Uploads an image; value() is its size in bytes. */
class VARDA_EXPORT FirmwareJob final : public VardaJob
{
    Q_OBJECT
    Q_PROPERTY(qint64 resumedAt READ resumedAt NOTIFY stateChanged)
public:
    /** Where the computer wanted to go on; 0 for a new upload and for an image without header. */
    [[nodiscard]] qint64 resumedAt() const;
    /** How long the successful upload took; 0 before. */
    [[nodiscard]] std::chrono::milliseconds elapsed() const;

private:
    friend class VardaComputerPrivate;
    friend class FirmwareWork;
    explicit FirmwareJob(VardaJobPrivate *job);
};
