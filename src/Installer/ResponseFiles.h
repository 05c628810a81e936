// The two small files through which an outer front end talks to the program, both in the temporary folder:
// TavixInstallI.txt, options in, and TavixInstallO.txt, the exit code out.
#pragma once

#include <cstdint>
#include <string>

// The temporary folder (GetTempPathA), with its closing back-slash; empty when the platform does not tell.
std::string ResponseFolder();

// Reads the input file of `folder` and deletes it, whether or not it could be read. Answers its text, empty for none.
std::string TakeInputResponse(const std::string &folder);

// Writes the exit code in decimal digits, without a line end, in place of any older output file. A failure is ignored:
// there is nobody left to tell.
void WriteOutputResponse(const std::string &folder, uint32_t exitCode);
