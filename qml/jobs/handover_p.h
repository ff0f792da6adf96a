// SPDX-License-Identifier: MIT
#pragma once

class QJSEngine;
class QObject;
class VardaJob;

/** The QML engine that an object lives in; null outside QML. */
QJSEngine *engineOf(const QObject *object);

/**
 * Gives a job to the QML engine of @p from: it stays as long as it runs or QML refers to it, and
 * the garbage collector deletes it after that.
 */
void handOver(VardaJob *job, const QObject *from);

/** Leaves to the garbage collector what a parent has protected from it so far. */
void letGo(QObject *object, QJSEngine *engine);
