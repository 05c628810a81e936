// Texts that stand in a resource library, in the language of the user.
#pragma once

#include <string>

// Finds the text that a link names. A link is a text itself, or "@LIBRARY,ID" for a string of a library's string table
// (the sign of ID does not count), or "@TEXT". The string is looked for in the language that Windows shows to the user
// and then in ever broader ones; it comes in the ANSI code page.
//
// `resStr_O` gets the text, empty when there is none; with `searchIdOnFailure` it is then what stands behind the comma.
// `dllStr_O` gets the library's name as it stands. Both are other variables than the link. Answers the number behind
// the comma, 0 without one.
int LoadDLLStringResource(const std::string &linkStr_I, std::string &resStr_O, std::string &dllStr_O,
                          bool searchIdOnFailure);
