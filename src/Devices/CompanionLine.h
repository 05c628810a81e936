// What the companion installer is told, as text: the choice between its two forms, and the parameters of its verbs.
#pragma once

#include <string>

// Whether the companion is a program that takes a verb, and not a library with exports. Its name alone decides: ".exe"
// anywhere in it, in a folder's name too, exact with regard to case.
bool IsCompanionProgram(const std::string &companion);

// The INF file as a program is told of it: ".\" at the beginning stands for the current directory, given without a
// back-slash at its end; any other text stays as it is.
std::string InfFullPath(const std::string &inf, const std::string &currentDirectory);

// The parameters of the program's verbs. Texts go between the quotation marks as they are.
std::string InstallParameters(const std::string &device, const std::string &infPath);
std::string UpdateParameters(const std::string &device, const std::string &infPath);
std::string SelectedDriverParameters(const std::string &device, const std::string &inf);
std::string RemoveParameters(const std::string &device);
std::string RemoveInstanceParameters(const std::string &device);
constexpr char kRescanParameters[] = "Rescan";

// The verb alone, and with a device of the list by its id.
const char *SelectiveSuspendVerb(bool enable);
std::string SelectiveSuspendParameters(bool enable, const std::string &id);

// The line by which a library finds the INF files to remove.
std::string OemInfMatchLine(const std::string &text);
