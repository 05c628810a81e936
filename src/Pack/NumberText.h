// Numbers as scripts write them.
#pragma once

#include <string>

// What is wrong with a decimal number; empty when nothing is.
std::string FaultOfNumber(const std::string &text);
