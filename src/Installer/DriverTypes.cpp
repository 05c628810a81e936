#include "Installer/DriverTypes.h"

#include "Common/DriverNames.h"
#include "Common/StringUtilities.h"
#include "Common/Trace.h"

namespace {

struct DriverTypeRow {
    const char *mPrefType;
    int32_t mType;
    const char *mExpectation; // what is reported while the variable still holds another type
};

// Every type but the first is reported when it is read, since the variable holds the first by then: those who read
// traces expect that line in every run of the five.
constexpr DriverTypeRow kDriverTypes[] = {
    {"Pen_Tablet", EDriverConPen, nullptr},
    {"Tavix_Tablet", EDriverProPen, "mDriverType == EDriverProPen || mDriverType == EDriverDEBUG"},
    {"ISD_Tablet", EDriverISDPen, "mDriverType == EDriverISDPen || mDriverType == EDriverDEBUG"},
    {"Pen_Touch", EDriverConTouch, "mDriverType == EDriverConTouch || mDriverType == EDriverDEBUG"},
    {"Tavix_Touch", EDriverProTouch, "mDriverType == EDriverProTouch || mDriverType == EDriverDEBUG"},
    {"ISD_Touch", EDriverISDTouch, "mDriverType == EDriverISDTouch || mDriverType == EDriverDEBUG"},
};

} // namespace

bool SettleDriverType(const std::string &prefType)
{
    CDriverType::Set(EDriverConPen);
    for (const DriverTypeRow &row : kDriverTypes) {
        if (EqualsNoCase(prefType, row.mPrefType)) {
            if (row.mExpectation != nullptr) {
                traceExpectation(row.mExpectation);
            }
            CDriverType::Set(row.mType);
            return true;
        }
    }
    trace(9, "Driver type not recognized: [%s]\n", prefType.c_str());
    return false;
}
