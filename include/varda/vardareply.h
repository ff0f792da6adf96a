// SPDX-License-Identifier: MIT
#pragma once

#include <varda/vardajob.h>

/**
 * A job whose value() is a T. This is only a typed view, without data or virtual functions, so that
 * nothing of it crosses the border of the library. qobject_cast cannot cast to it.
 */
template <typename T> class VardaReply final : public VardaJob
{
public:
    /** The result; a default T before the end and after a failure. */
    [[nodiscard]] T result() const { return qvariant_cast<T>(value()); }

private:
    friend class VardaComputerPrivate;
    explicit VardaReply(VardaJobPrivate *job) : VardaJob(job) { }
};
