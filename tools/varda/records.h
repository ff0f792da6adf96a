// SPDX-License-Identifier: MIT
#pragma once

#include <varda/blecomputer.h>
#include <varda/bleconfig.h>
#include <varda/bledeviceinfo.h>

#include <QtCore/qjsonarray.h>
#include <QtCore/qjsonobject.h>
#include <QtCore/qjsonvalue.h>
#include <QtCore/qlist.h>
#include <QtCore/qstring.h>

#include <utility>

/** A record's fields under their own names, in their own order. */
using Fields = QList<std::pair<QString, QJsonValue>>;

[[nodiscard]] Fields fieldsOf(const BleConfig &config);
[[nodiscard]] Fields fieldsOf(const BleComputer &computer);

[[nodiscard]] QJsonObject toJson(const Fields &fields);
[[nodiscard]] QJsonObject toJson(const BleDeviceInfo &device);

/** A field's value on one line. */
[[nodiscard]] QString plainText(const QJsonValue &value);
