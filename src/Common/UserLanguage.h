// What Windows tells about the user's language.
#pragma once

#include <cstdint>

// The locale of the user's regional settings: language identifier in the low 16 bits, sort order above.
uint32_t GetUserLocaleId();

// Language identifier of the texts that Windows shows to the user; where Windows cannot tell, that of the
// regional settings.
uint16_t GetUserUILanguageId();
