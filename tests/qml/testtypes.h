// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qdir.h>
#include <QtCore/qfile.h>
#include <QtCore/qjsondocument.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qtemporarydir.h>
#include <QtQml/qqml.h>

#include <varda/dive.h>

#include "dives.h"
#include "simulator.h"

/** What a test in QML needs of the simulator. */
class SimulatedComputers : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Simulator)
    QML_SINGLETON

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
    Q_INVOKABLE static QVariant frames() { return Simulator::frames(); }
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

/** Files of this run, and what is in them. */
class TestFiles : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Files)
    QML_SINGLETON

public:
    /** In a folder of its own, which is removed at the end. */
    Q_INVOKABLE QString newFile(const QString &name)
    {
        return m_folder.filePath(QString::number(++m_count) + u'/' + name);
    }
    /** A path where nothing is, in a folder that is there. */
    Q_INVOKABLE QString newPath(const QString &name)
    {
        QDir(m_folder.path()).mkdir(QString::number(++m_count));
        return m_folder.filePath(QString::number(m_count) + u'/' + name);
    }
    /** The programs of the documentation. */
    Q_INVOKABLE static QStringList documents()
    {
        QStringList paths;
        const QDir folder(QStringLiteral(VARDA_DOCUMENTS));
        for (const QString &name : folder.entryList({QStringLiteral("*.qml")}))
            paths.append(folder.filePath(name));
        return paths;
    }
    Q_INVOKABLE static void write(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("cannot write the file");
    }
    /** Of Latin letters. */
    Q_INVOKABLE static QString text(const QByteArray &bytes) { return QString::fromLatin1(bytes); }
    /** As text; empty if there is no file. */
    Q_INVOKABLE static QString content(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    Q_INVOKABLE static void spoil(const QString &path)
    {
        QFile file(path);
        if (!file.open(QFile::WriteOnly)
            || file.write("no database, but a text that is longer") < 0)
            qFatal("cannot write the file");
    }
    Q_INVOKABLE static void remove(const QString &path) { QFile::remove(path); }
    /** A dive down to that depth and up again, in a minute. */
    Q_INVOKABLE static QVariant dive(int number, double begin, double depth)
    {
        Dive dive;
        dive.diveNumber = std::uint16_t(number);
        dive.stamp = std::uint64_t(begin);
        dive.serialNumber = QStringLiteral("00000001");
        dive.lines = {DiveLine{}, DiveLine{}, DiveLine{}};
        dive.lines[1].time = 30;
        dive.lines[1].depth = depth;
        dive.lines[2].time = 60;
        return QVariant::fromValue(dive);
    }

private:
    QTemporaryDir m_folder;
    int m_count = 0;
};

/** The dives that pictures are tested with. */
class SampleDives : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Dives)
    QML_SINGLETON

public:
    Q_INVOKABLE static QVariant deep() { return QVariant::fromValue(deepDive()); }
    Q_INVOKABLE static QVariant shallow() { return QVariant::fromValue(shallowDive()); }
    Q_INVOKABLE static QVariant many() { return QVariant::fromValue(manySamples()); }
};
