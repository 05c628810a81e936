// Device ids as text: from the product list to fragments, from fragments to the forms that drivers use.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Devices/DeviceTable.h"
#include "Devices/SupportedDevice.h"

// The part of an instance id that names a product, such as "VID_7A1C&PID_0110".
std::string UsbId(uint16_t vendorId, uint16_t productId);

// The run's list of supported devices, none found yet, in the order of the rows. `modern` says that the
// platform is Windows 8 or 8.1, where some rows count that do not count elsewhere and the other way round.
std::vector<SupportedDevice> SupportedDevicesFrom(const DeviceRow *rows, size_t count, bool modern);

// Whether `fragment` occurs in `id`, exact with regard to case; an empty fragment occurs in every id.
bool Contains(const std::string &id, const std::string &fragment);

// The forms in which the companion installer takes a device, for an id of the list.
std::string HidInstanceId(const std::string &id); // first collection of its HID interface
std::string UsbInstanceId(const std::string &id); // on the USB bus, or under ACPI when the id has no PID

// The name of a device in the macro PRODUCT_NAME and in its data file: its id with every & turned into _.
std::string ProductNameOf(std::string id);
