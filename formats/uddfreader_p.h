// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qhash.h>
#include <QtCore/qxmlstream.h>

#include <varda/divesread.h>

/** Zero degrees Celsius in kelvin. */
inline constexpr double kFreezing = 273.15;
/** Written where the begin of a dive is unknown, since importers ask for a date. */
inline constexpr char kStandInDate[] = "1970-01-01T00:00:00";
inline constexpr char kUddfNamespace[] = "http://www.streit.cc/uddf/3.2/";

/** Reads one UDDF file. */
class UddfReader
{
public:
    explicit UddfReader(QIODevice *device) : m_xml(device) { }
    [[nodiscard]] DivesRead read();

private:
    struct Computer {
        ComputerModel::ComputerModelIn model = ComputerModel::Unknown;
        QString serialNumber = {}; // NOLINT(readability-redundant-member-init): GCC asks for it
    };

    void readRoot();
    void readOwner();
    void readPersonal();
    void readComputer();
    void readMixes();
    void readMix();
    void readDive();
    void readBefore(Dive &dive);
    void readTank(Dive &dive);
    void readSamples(Dive &dive);
    [[nodiscard]] DiveLine readWaypoint(Dive &dive, const DiveLine &previous);
    [[nodiscard]] int gasOf(Dive &dive, const QString &id);

    /** Calls the function for each child that has a name of the list, and skips the others. */
    template <typename Function> void eachChild(Function function);
    [[nodiscard]] QString text();
    [[nodiscard]] double number(double lowest);
    [[nodiscard]] float fraction();
    [[nodiscard]] QString reference();
    void fail(const QString &what);

    QXmlStreamReader m_xml;
    QHash<QString, Computer> m_computers;
    QHash<QString, DiveGas> m_mixes;
    /** The mixes of the dive that is being read: where they stand in its gases. */
    QHash<QString, int> m_gases;
    QString m_owner;
    QList<Dive> m_dives;
};
