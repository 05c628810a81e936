// Moves that Windows carries out at its next start, in the order in which they were asked for.
#pragma once

#include <string>

// Asks for `from` to be deleted at the next start. Answers whether that was recorded; the last error tells
// why not. The file is looked at only at that start.
bool DeleteAtNextBoot(const std::string &from);

// Asks for `from` to be moved to `to` at the next start, where nothing may stand at `to` by then.
bool MoveAtNextBoot(const std::string &from, const std::string &to);
