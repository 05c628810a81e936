// The resource library of an OEM, which travels inside the OEM's XML document as text.
#pragma once

#include <string>

#include <libxml/tree.h>

constexpr int kResourceDllWritten = 0;
constexpr int kResourceDllNotWritten = 1543; // a file cannot be opened

// Writes the bytes that the element /root/LocalizationTable holds to the file `path`; `disableRedirect`: to where the
// 64-bit system has it. Answers 0, also when the document is null or has no such element, or 1543.
int ExtractResourceDll(xmlDocPtr doc, const std::string &path, bool disableRedirect);

// Writes the bytes of a file as such a text to another file, replacing it. Takes files of any size. Answers 0 or 1543.
int FileToHex(const std::string &inputPath, const std::string &outputPath);
