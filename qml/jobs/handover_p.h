// SPDX-License-Identifier: MIT
#pragma once

class QObject;
class VardaJob;

/**
 * Gives a job to the QML engine of @p from: it stays as long as it runs or QML refers to it, and
 * the garbage collector deletes it after that.
 */
void handOver(VardaJob *job, const QObject *from);
