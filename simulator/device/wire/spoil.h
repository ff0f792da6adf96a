// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qbytearray.h>
#include <QtCore/qlist.h>

namespace simulator {

struct Fault;

/** Does to the frames of an answer what a fault at step "answer" wants. */
void spoilAnswer(QList<QByteArray> &frames, const Fault &fault);

/** What is sent instead of one notification; it has nothing to do with others. */
QList<QByteArray> spoiltNotification(const QByteArray &bytes, const Fault &fault);

} // namespace simulator
