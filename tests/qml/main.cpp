// SPDX-License-Identifier: MIT
// Runs a file of Qt Quick Test beside a simulated computer.
#include <QtQml/qqmlengine.h>
#include <QtQuickTest/quicktest.h>

#include "simulator.h"

/** Has the simulator ready before anything looks at the bus. */
class Setup : public QObject
{
    Q_OBJECT

public:
    Setup() { Simulator::start(); }

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral(VARDA_QML));
    }
};

QUICK_TEST_MAIN_WITH_SETUP(qml, Setup)

#include "main.moc"
