// The two small files through which an outer front end talks to the program, both in the temporary folder:
// TavixInstallI.txt, options in, and TavixInstallO.txt, the exit code out. Others may have left something there.
#pragma once

#include <cstdint>
#include <string>

// Reads the input file of `folder` and deletes it, whether or not it could be read. Answers its text, empty for none.
// One that belongs to neither the user of the run nor the administrators nor the system is not read. What the trace,
// which is not open yet, is to tell of the file comes back in note_O: a line without its end, or nothing.
std::string TakeInputResponse(const std::string &folder, std::string &note_O);

// Takes away the output file of an earlier run, so that nobody takes it for the outcome of this one.
void DropOutputResponse(const std::string &folder);

// Writes the exit code in decimal digits, without a line end, as a new file in place of any older one. A failure is
// ignored: there is nobody left to tell.
void WriteOutputResponse(const std::string &folder, uint32_t exitCode);
