#include "Devices/Quillo.h"

#include <algorithm>
#include <iterator>

#include "Common/Trace.h"
#include "Devices/DeviceIds.h"
#include "Devices/DeviceTable.h"
#include "Registry/RegAccess.h"

namespace {

// Windows keeps a key for each device that it has met. Without a leading back-slash: the key is opened as it stands.
bool WasMet(uint16_t productId)
{
    const std::string id = UsbId(kVendorId, productId);
    return RegValueExists({kRootLocalMachine, "SYSTEM\\CurrentControlSet\\Enum\\USB\\" + id, std::string()},
                          std::string());
}

} // namespace

bool IsQuilloPresent()
{
    const bool present = std::any_of(std::begin(gQuilloProductIds), std::end(gQuilloProductIds), WasMet);
    trace(7, "Is Quillo Present: %s\n", YesNo(present));
    return present;
}
