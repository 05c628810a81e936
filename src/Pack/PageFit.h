// How much room a text of the window takes, by estimated widths: the fonts of the machines are not at hand.
#pragma once

#include <cstdint>
#include <string>

// The width of a line in pixels of a screen with 96 points an inch, in a font of `points`. A "&" marks the letter
// behind it and takes no room.
int32_t LineWidth(std::u16string_view line, int32_t points);

// The height of a text in pixels that is broken into lines of at most `width`, at blanks and between letters of the
// East.
int32_t TextHeight(std::u16string_view text, int32_t width, int32_t points);
