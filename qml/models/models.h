// SPDX-License-Identifier: MIT
#pragma once

#include "computervalues.h"
#include "divevalues.h"
#include "recordmodel.h"

// A model for each kind of list.

class BatteryModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit BatteryModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<BatteryInfoValue, BatteryInfoRecord>(), parent)
    {
    }
};

class GasModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit GasModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<DiveGasValue, DiveGas>(), parent)
    {
    }
};

class HeaderModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit HeaderModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<DiveHeaderValue, TidemarDiveHeader>(), parent)
    {
    }
};

class LayoutModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LayoutModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<LayoutEntryValue, LayoutEntry>(), parent)
    {
    }
};

/** The points of a dive's profile. */
class LineModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LineModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<DiveLineValue, DiveLine>(), parent)
    {
    }
};

class LogModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit LogModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<SyslogBinValue, SyslogBinRecord>(), parent)
    {
    }
};

class SampleModel : public ListModel
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit SampleModel(QObject *parent = nullptr)
        : ListModel(RecordKind::of<DiveSampleValue, DiveSample>(), parent)
    {
    }
};
