// SPDX-License-Identifier: MIT
#include "handover_p.h"

#include <QtCore/qmetaobject.h>
#include <QtCore/qpointer.h>
#include <QtQml/qjsengine.h>
#include <QtQml/qqmlengine.h>

#include <varda/vardajob.h>

QJSEngine *engineOf(const QObject *object)
{
    // The first knows only objects that a script has seen already.
    QJSEngine *const engine = qjsEngine(object);
    return engine ? engine : qmlEngine(object);
}

void handOver(VardaJob *job, const QObject *from)
{
    const QPointer<QJSEngine> engine(engineOf(from));
    if (!engine)
        return; // nobody collects it: it deletes itself
    job->setAutoDelete(false);
    QJSEngine::setObjectOwnership(job, QJSEngine::JavaScriptOwnership);
    QObject::connect(job, &VardaJob::finished, job, [engine](VardaJob *ended) {
        if (engine)
            letGo(ended, engine);
        else
            ended->deleteLater();
    });
}

namespace {

/** But from destroyed(). */
void disconnectSignals(QObject *object)
{
    const QMetaObject &type = *object->metaObject();
    for (int i = QObject::staticMetaObject.methodCount(); i < type.methodCount(); ++i) {
        if (type.method(i).methodType() == QMetaMethod::Signal)
            QObject::disconnect(object, type.method(i), nullptr, QMetaMethod());
    }
}

} // namespace

void letGo(QObject *object, QJSEngine *engine)
{
    // What refers to it may have been collected before: then nothing would ever delete it, if there
    // were no new reference.
    object->setParent(nullptr);
    engine->newQObject(object);
    // A function that QML has connected stays as long as it is connected, with all that it refers
    // to; often that is the object itself. Nothing more comes after the end.
    QMetaObject::invokeMethod(
        object, [object] { disconnectSignals(object); }, Qt::QueuedConnection);
}
