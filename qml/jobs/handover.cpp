// SPDX-License-Identifier: MIT
#include "handover_p.h"

#include <QtCore/qpointer.h>
#include <QtQml/qjsengine.h>

#include <varda/vardajob.h>

void handOver(VardaJob *job, const QObject *from)
{
    const QPointer<QJSEngine> engine(qjsEngine(from));
    if (!engine)
        return; // nobody collects it: it deletes itself
    job->setAutoDelete(false);
    QJSEngine::setObjectOwnership(job, QJSEngine::JavaScriptOwnership);
    QObject::connect(job, &VardaJob::finished, job, [engine](VardaJob *ended) {
        if (!engine) {
            ended->deleteLater();
            return;
        }
        // Its parent has protected it. What refers to it may have been collected before: then
        // nothing would ever delete it, if there were no new reference.
        ended->setParent(nullptr);
        engine->newQObject(ended);
    });
}
