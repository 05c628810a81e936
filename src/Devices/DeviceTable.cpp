#include "Devices/DeviceTable.h"

namespace {
constexpr uint32_t kPenAndTouch = kDevicePen | kDeviceTouch;
constexpr uint32_t kStudioPen = kDevicePen | kDeviceExpressKeys;
constexpr uint32_t kStudioScreen = kDeviceDisplayPen | kDeviceExpressKeys;
constexpr uint32_t kPanelPen = kDeviceDisplayPen | kDeviceOwnData;
constexpr uint32_t kPanelTouch = kDeviceTouch | kDeviceOwnData;
constexpr uint32_t kPanelBoth = kDeviceDisplayPen | kDeviceTouch | kDeviceOwnData;
} // namespace

// Panels are built into computers of other makers; each of these computers brings a data file of its own.
const DeviceRow gDeviceTable[kDeviceRowCount] = {
    // Quillo, the consumer family
    {0x0110, kVendorId, kDevicePen, nullptr},   // Quillo Note S
    {0x0111, kVendorId, kDevicePen, nullptr},   // Quillo Note M
    {0x0114, kVendorId, kDevicePen, nullptr},   // Quillo Draw S
    {0x0115, kVendorId, kDevicePen, nullptr},   // Quillo Draw M
    {0x0118, kVendorId, kDeviceTouch, nullptr}, // Quillo Pad
    {0x0119, kVendorId, kDeviceTouch, nullptr}, // Quillo Pad Wireless
    {0x011C, kVendorId, kPenAndTouch, nullptr}, // Quillo Duo S
    {0x011D, kVendorId, kPenAndTouch, nullptr}, // Quillo Duo M
    {0x0120, kVendorId, kPenAndTouch, nullptr}, // Quillo Duo 2 S
    {0x0121, kVendorId, kPenAndTouch, nullptr}, // Quillo Duo 2 M
    {0x0122, kVendorId, kPenAndTouch, nullptr}, // Quillo Duo 2 M Special Edition
    {0x0128, kVendorId, kDevicePen, nullptr},   // Quillo Sketch
    {0x0129, kVendorId, kPenAndTouch, nullptr}, // Quillo Sketch Touch
    // Studio, the professional family
    {0x0240, kVendorId, kStudioPen, nullptr},                   // Studio S
    {0x0241, kVendorId, kStudioPen, nullptr},                   // Studio M
    {0x0242, kVendorId, kStudioPen, nullptr},                   // Studio L
    {0x0243, kVendorId, kStudioPen, nullptr},                   // Studio XL
    {0x0248, kVendorId, kStudioPen | kDeviceTouch, nullptr},    // Studio 2 S
    {0x0249, kVendorId, kStudioPen | kDeviceTouch, nullptr},    // Studio 2 M
    {0x024A, kVendorId, kStudioPen | kDeviceTouch, nullptr},    // Studio 2 L
    {0x024E, kVendorId, kDeviceExpressKeys, nullptr},           // Studio Remote, keys alone
    {0x0250, kVendorId, kDeviceDisplayPen, nullptr},            // Studio Screen 13
    {0x0251, kVendorId, kStudioScreen, nullptr},                // Studio Screen 22
    {0x0252, kVendorId, kStudioScreen, nullptr},                // Studio Screen 24
    {0x0253, kVendorId, kStudioScreen | kDeviceTouch, nullptr}, // Studio Screen 24 Touch
    // Panel, the integrated devices
    {0x0390, kVendorId, kDeviceDisplayPen, nullptr},                // Panel A, data file of the package
    {0x0391, kVendorId, kDeviceDisplayPen, nullptr},                // Panel A wide, data file of the package
    {0x0392, kVendorId, kPanelPen, nullptr},                        // Panel B 10
    {0x0393, kVendorId, kPanelPen, nullptr},                        // Panel B 12
    {0x0394, kVendorId, kPanelPen, nullptr},                        // Panel B 13
    {0x0398, kVendorId, kDeviceTouch, nullptr},                     // Panel T, data file of the package
    {0x0399, kVendorId, kPanelTouch, nullptr},                      // Panel T 10
    {0x039A, kVendorId, kPanelTouch, nullptr},                      // Panel T 12
    {0x039B, kVendorId, kPanelTouch, nullptr},                      // Panel T 14
    {0x03A0, kVendorId, kDeviceDisplayPen | kDeviceTouch, nullptr}, // Panel C, data file of the package
    {0x03A1, kVendorId, kPanelBoth, nullptr},                       // Panel C 10
    {0x03A2, kVendorId, kPanelBoth, nullptr},                       // Panel C 11
    {0x03A3, kVendorId, kPanelBoth, nullptr},                       // Panel C 12
    {0x03A4, kVendorId, kPanelBoth, nullptr},                       // Panel C 13
    {0x03A8, kVendorId, kPanelBoth, nullptr},                       // Panel D 13
    {0x03A9, kVendorId, kPanelBoth, nullptr},                       // Panel D 14
    // the end
    {0xFFFF, 0xFFFF, 0, nullptr},
};

const uint16_t gQuilloProductIds[kQuilloCount] = {
    0x0110, 0x0111, 0x0114, 0x0115, 0x0118, 0x0119, 0x011C, 0x011D, 0x0120, 0x0121, 0x0122, 0x0128, 0x0129,
};
