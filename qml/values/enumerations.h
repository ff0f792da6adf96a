// SPDX-License-Identifier: MIT
#pragma once

#include <QtQml/qqml.h>

#include <varda/bledevicestate.h>
#include <varda/blemode.h>
#include <varda/computermodel.h>
#include <varda/connectcontrollerstatus.h>
#include <varda/createcontrollerstatus.h>
#include <varda/currentmode.h>
#include <varda/exchangeerror.h>
#include <varda/gasusage.h>
#include <varda/tidemarcommand.h>

// The enumerations under the names that they have in C++: ComputerModel.Tidemar.

namespace BleDeviceStateEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(BleDeviceState)
QML_NAMED_ELEMENT(BleDeviceState)
} // namespace BleDeviceStateEnum

namespace BleModeEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(BleModes)
QML_NAMED_ELEMENT(BleMode)
} // namespace BleModeEnum

namespace ComputerModelEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(ComputerModel)
QML_NAMED_ELEMENT(ComputerModel)
} // namespace ComputerModelEnum

namespace ConnectControllerStatusEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(ConnectControllerStatus)
QML_NAMED_ELEMENT(ConnectControllerStatus)
} // namespace ConnectControllerStatusEnum

namespace CreateControllerStatusEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(CreateControllerStatus)
QML_NAMED_ELEMENT(CreateControllerStatus)
} // namespace CreateControllerStatusEnum

namespace CurrentModeEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(CurrentMode)
QML_NAMED_ELEMENT(CurrentMode)
} // namespace CurrentModeEnum

namespace ExchangeErrorEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(ExchangeError)
QML_NAMED_ELEMENT(ExchangeError)
} // namespace ExchangeErrorEnum

namespace GasUsageEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(GasUsage)
QML_NAMED_ELEMENT(GasUsage)
} // namespace GasUsageEnum

namespace TidemarCommandEnum {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(TidemarCommand)
QML_NAMED_ELEMENT(TidemarCommand)
} // namespace TidemarCommandEnum
