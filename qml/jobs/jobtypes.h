// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqml.h>

#include <varda/downloadjob.h>
#include <varda/firmwarejob.h>
#include <varda/searchjob.h>
#include <varda/syncjob.h>
#include <varda/vardacheck.h>
#include <varda/vardadoctor.h>
#include <varda/vardajob.h>

// Jobs are made by the calls of a computer. QML cannot extend what it has not created, so all that
// it sees of them is in the classes themselves.

struct JobType {
    Q_GADGET
    QML_FOREIGN(VardaJob)
    QML_NAMED_ELEMENT(VardaJob)
    QML_UNCREATABLE("Call a function of VardaComputer.")
};

struct DownloadJobType {
    Q_GADGET
    QML_FOREIGN(DownloadJob)
    QML_NAMED_ELEMENT(DownloadJob)
    QML_UNCREATABLE("Call VardaComputer.downloadDives().")
};

struct SearchJobType {
    Q_GADGET
    QML_FOREIGN(SearchJob)
    QML_NAMED_ELEMENT(SearchJob)
    QML_UNCREATABLE("Call VardaComputer.search().")
};

struct FirmwareJobType {
    Q_GADGET
    QML_FOREIGN(FirmwareJob)
    QML_NAMED_ELEMENT(FirmwareJob)
    QML_UNCREATABLE("Call VardaComputer.uploadFirmware().")
};

struct SyncJobType {
    Q_GADGET
    QML_FOREIGN(SyncJob)
    QML_NAMED_ELEMENT(SyncJob)
    QML_UNCREATABLE("Call VardaComputer.sync().")
};

struct DoctorType {
    Q_GADGET
    QML_FOREIGN(VardaDoctor)
    QML_NAMED_ELEMENT(VardaDoctor)
    QML_UNCREATABLE("Call VardaComputer.examine().")
};

// What checked() gives is a gadget, whose enumerations QML knows by this name.
namespace VardaCheckEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(VardaCheck)
QML_NAMED_ELEMENT(VardaCheck)
} // namespace VardaCheckEnum
