// The two readers through which all configuration comes. The section decides the source: an empty one
// means the registry (top of the location stack, or the installer's own key), any other the script files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Size in bytes of the buffer that one value or one section is read into.
constexpr size_t kValueBufferSize = 10240;

// Reads a text. Key given: the value; key empty: the whole section, each line with a NUL behind it.
// `raw` leaves escapes alone and expands REG_EXPAND_SZ; it is meant for the registry. Failure answers the
// default (see the definition for the one exception) and sets the last status.
std::string ReadString(const std::string &section, const std::string &key, const std::string &defaultValue,
                       bool raw = false);

// Reads a number, answering the default on every failure; sets the last status.
uint32_t ReadInteger(const std::string &section, const std::string &key, uint32_t defaultValue);

// The same readers with the dialog data file at the end of the search list for the time of the read.
std::string ReadLanguageString(const std::string &section, const std::string &key, const std::string &defaultValue);
uint32_t ReadLanguageInteger(const std::string &section, const std::string &key, uint32_t defaultValue);

// Makes `name` the script and answers the former path. An empty name or "." changes nothing, but the
// first call of all locates the script.
std::string SetConfigFile(const std::string &name);

// Appends a file to the search list unless the path is empty.
void AddIncludeFile(const std::string &path);

// Names the file that language reads search first; empty for none.
void SetDialogData(const std::string &path);

// Forgets the search list.
void ReleaseSearchList();

// Path of the main script; empty until it is located.
extern std::string mConfigFile;
