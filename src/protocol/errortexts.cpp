// SPDX-License-Identifier: MIT
#include <varda/vardableprotocol.h>

#include <array>

using namespace Qt::StringLiterals;

namespace {

// Indexed by the enumerations' values; what lies outside has no text of its own.

constexpr std::array kControllerErrors = {
    "Unknown Error", // NoError: nobody asks for the text of a success
    "Unknown Error",
    "Unknown Remote Device Error",
    "Network Error",
    "Invalid Bluetooth Adapter Error",
    "Connection Error",
    "Advertising Error",
    "Remote Host Closed Error",
    "Authorization Error",
    "Missing Permissions Error",
};

constexpr std::array kServiceErrors = {
    "No Error",
    "Operation Error",
    "Characteristic Write Error",
    "Descriptor Write Error",
    "Unknown Error",
    "Characteristic Read Error",
    "Descriptor Read Error",
};

constexpr std::array kScanErrors = {
    "Unknown Error",
    "Input Output Error",
    "Powered Off Error",
    "Invalid Bluetooth Adapter Error",
    "Unsupported Platform Error",
    "Unsupported Discovery Method",
    "Location Service Turned Off Error",
    "Missing Permissions Error",
};

constexpr std::array kExchangeErrors = {
    "Invalid CRC", "Begin Program Error", "Program Error", "End Program Error", "Set Owner Error",
};

template <std::size_t N> QString textOf(const std::array<const char *, N> &texts, int value)
{
    if (value < 0 || std::size_t(value) >= N)
        return u"Unknown Error"_s;
    return QString::fromLatin1(texts[std::size_t(value)]);
}

} // namespace

QString VardaBleProtocol::controllerErrorString(QLowEnergyController::Error error)
{
    return textOf(kControllerErrors, int(error));
}

QString VardaBleProtocol::serviceErrorString(QLowEnergyService::ServiceError error)
{
    return textOf(kServiceErrors, int(error));
}

QString VardaBleProtocol::scanErrorString(QBluetoothDeviceDiscoveryAgent::Error error)
{
    return textOf(kScanErrors, int(error));
}

QString VardaBleProtocol::exchangeErrorString(ExchangeError::ExchangeErrorIn error)
{
    return textOf(kExchangeErrors, int(error));
}
