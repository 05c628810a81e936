// Reads shell links back through the shell's own interface.
#pragma once

#include <string>

// What a link file holds: "TARGET; ARGUMENTS; DESCRIPTION; FOLDER; HOTKEY in hexadecimal; ICON, INDEX"; empty when
// the shell cannot read it.
std::string ShownLink(const std::string &path);
