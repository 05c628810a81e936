// The two readers through which all configuration comes. The section decides the source: an empty one means the
// registry (top of the location stack, or the installer's own key), any other the script files of the process.
#pragma once

#include <cstdint>
#include <string>

#include "Script/ScriptFiles.h"

// The script files of this process, read by the platform.
CScriptFiles &ScriptFiles();

// Reads a text. Key given: the value; key empty: the whole section, each line with a NUL behind it.
// `raw` leaves escapes alone and expands REG_EXPAND_SZ; it is meant for the registry. Failure answers the
// default (CScriptFiles tells the one exception) and sets the last status.
std::string ReadString(const std::string &section, const std::string &key, const std::string &defaultValue,
                       bool raw = false);

// Reads a number, answering the default on every failure; sets the last status.
uint32_t ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue);
