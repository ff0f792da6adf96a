// SPDX-License-Identifier: MIT
// Runs a file of Qt Quick Test beside a simulated computer.
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>
#include <QtQml/qqmlengine.h>
#include <QtQuickTest/quicktest.h>

#include "simulator.h"

/** What a test in QML needs of the simulator. */
class SimulatedComputers : public QObject
{
    Q_OBJECT

public:
    /** A world of one known device with these members; what is wrong with them, or nothing. */
    Q_INVOKABLE static QString load(const QVariantMap &device)
    {
        const QByteArray json =
            QJsonDocument(QJsonObject::fromVariantMap(device)).toJson(QJsonDocument::Compact);
        return Simulator::loadKnown(json.mid(1, json.size() - 2));
    }
    /** The whole world. */
    Q_INVOKABLE static QString loadScenario(const QString &json)
    {
        return Simulator::loadScenario(json.toUtf8());
    }
    Q_INVOKABLE static QVariantMap state() { return Simulator::state().toVariantMap(); }
    Q_INVOKABLE static QStringList frames() { return Simulator::frames(); }
    /** Follows an object to its deletion. */
    Q_INVOKABLE void watch(QObject *object)
    {
        ++m_alive;
        connect(object, &QObject::destroyed, this, [this] { --m_alive; });
    }
    /** How many of the watched objects there are. */
    Q_INVOKABLE int alive() const { return m_alive; }
    Q_INVOKABLE static void drop() { Simulator::drop(); }

private:
    int m_alive = 0;
};

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
        qmlRegisterSingletonInstance("VardaTest", 1, 0, "Simulator", &m_computers);
    }

private:
    SimulatedComputers m_computers;
};

QUICK_TEST_MAIN_WITH_SETUP(qml, Setup)

#include "main.moc"
