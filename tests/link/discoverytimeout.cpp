// SPDX-License-Identifier: MIT
#include "discoverytimeout.h"

#include <QtBluetooth/qbluetoothdevicediscoveryagent.h>

#include <dlfcn.h>

namespace {

int lastAsked = -1;
int replacement = -1;

} // namespace

int DiscoveryTimeout::asked()
{
    return lastAsked;
}

void DiscoveryTimeout::replaceBy(int milliseconds)
{
    replacement = milliseconds;
}

// The program's own definition comes before that of Qt Bluetooth.
void QBluetoothDeviceDiscoveryAgent::setLowEnergyDiscoveryTimeout(int msTimeout)
{
    using Function = void (*)(QBluetoothDeviceDiscoveryAgent *, int);
    static const auto kOriginal = reinterpret_cast<Function>(
        ::dlsym(RTLD_NEXT, "_ZN30QBluetoothDeviceDiscoveryAgent28setLowEnergyDiscoveryTimeoutEi"));
    lastAsked = msTimeout;
    kOriginal(this, replacement < 0 ? msTimeout : replacement);
}
