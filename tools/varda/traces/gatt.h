// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qglobal.h>
#include <QtCore/qstring.h>

/** What is said in the Bluetooth packets that carry the computers' data. */
namespace Gatt {

inline constexpr auto kGattService = QLatin1StringView("49535343-fe7d-4ae5-8fa9-9fafd205e455");
inline constexpr auto kGattData = QLatin1StringView("49535343-1e4d-4bd9-ba61-23c647249616");
inline constexpr auto kSpsService = QLatin1StringView("2456e1b9-26e2-8f83-e744-f34f01e9d701");
inline constexpr auto kSpsData = QLatin1StringView("2456e1b9-26e2-8f83-e744-f34f01e9d703");
inline constexpr auto kSpsCredits = QLatin1StringView("2456e1b9-26e2-8f83-e744-f34f01e9d704");

inline constexpr quint16 kPrimaryService = 0x2800;
inline constexpr quint16 kCharacteristic = 0x2803;
inline constexpr quint16 kClientConfiguration = 0x2902;
inline constexpr quint16 kDeviceName = 0x2A00;

/** The channel of L2CAP that attributes have. */
inline constexpr quint16 kAttributeChannel = 4;

enum Opcode : quint8 {
    ErrorResponse = 0x01,
    MtuRequest = 0x02,
    MtuResponse = 0x03,
    FindInformationRequest = 0x04,
    FindInformationResponse = 0x05,
    ReadByTypeRequest = 0x08,
    ReadByTypeResponse = 0x09,
    ReadByGroupRequest = 0x10,
    ReadByGroupResponse = 0x11,
    WriteRequest = 0x12,
    WriteResponse = 0x13,
    NotificationPdu = 0x1B,
    IndicationPdu = 0x1D,
    ConfirmationPdu = 0x1E,
    WriteCommand = 0x52,
};

inline constexpr quint8 kAttributeNotFound = 0x0A;

namespace Hci {
inline constexpr quint16 kCreateConnection = 0x200D;
inline constexpr quint16 kExtendedCreateConnection = 0x2043;
inline constexpr quint16 kDisconnect = 0x0406;
inline constexpr quint8 kDisconnected = 0x05;
inline constexpr quint8 kLeMeta = 0x3E;
inline constexpr quint8 kConnected = 0x01;
inline constexpr quint8 kAdvertised = 0x02;
inline constexpr quint8 kConnectedEnhanced = 0x0A;
inline constexpr quint8 kAdvertisedExtended = 0x0D;
inline constexpr quint8 kConnectedEnhanced2 = 0x29;
inline constexpr quint8 kEndedByUs = 0x16;
inline constexpr quint8 kEndedByOther = 0x13;
} // namespace Hci

} // namespace Gatt
