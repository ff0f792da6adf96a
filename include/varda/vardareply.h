// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardajob.h>

/**
 * A job whose value() is a T. Only a typed view: no data and no virtual function of its own, so that
 * nothing of it crosses the border of the library. There is no qobject_cast to it.
 */
template <typename T> class VardaReply final : public VardaJob
{
public:
    /** The result; a T of its default value before the end and after a failure. */
    [[nodiscard]] T result() const { return qvariant_cast<T>(value()); }

private:
    friend class VardaComputerPrivate;
    explicit VardaReply(VardaJobPrivate *job) : VardaJob(job) { }
};
