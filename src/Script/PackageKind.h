// Values of mDriverKind: what kind of package the script says it is.
#pragma once

#include <cstdint>

constexpr uint32_t kDriverKindPlain = 0;
constexpr uint32_t kDriverKindISD = 1;
constexpr uint32_t kDriverKindTouch = 2;
constexpr uint32_t kDriverKindVISD = 3;
