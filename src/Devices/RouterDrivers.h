// The drivers that the lines of the package share: the HID router with its filter, the serial bridge, bulk touch. Each
// function is one command of the script; `devices` is the list of the run, which the walks of `calls` may mark further.
#pragma once

#include <string>
#include <vector>

#include "Devices/DriverCalls.h"
#include "Devices/SupportedDevice.h"

using SupportedDevices = std::vector<SupportedDevice>;

void InstallTvxHidRouter(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls);
void InstallRouterFilter(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls);
void InstallSiLabs(const std::string &inf, CDriverCalls &calls);
void RemoveTvxHidRouter(const SupportedDevices &devices, CDriverCalls &calls);
void RemoveSiLabs(CDriverCalls &calls);
void InstallBulkTouch(const SupportedDevices &devices, const std::string &inf, CDriverCalls &calls);
void RemoveBulkTouch(const SupportedDevices &devices, CDriverCalls &calls);
