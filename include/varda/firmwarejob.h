// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardajob.h>

/** Uploads an image; value() is its size in bytes. */
class VARDA_EXPORT FirmwareJob final : public VardaJob
{
    Q_OBJECT
public:
    /** Where the computer said to go on; 0 for a fresh upload and for an image without header. */
    [[nodiscard]] qint64 resumedAt() const;
    /** How long the upload took that succeeded; 0 before. */
    [[nodiscard]] std::chrono::milliseconds elapsed() const;

private:
    friend class VardaComputerPrivate;
    friend class FirmwareWork;
    explicit FirmwareJob(VardaJobPrivate *job);
};
