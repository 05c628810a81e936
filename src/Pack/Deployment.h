// What each system that hands out software has to be told about a package: the commands of silent runs and what their
// exit codes mean, by its own conventions.
#pragma once

#include <string>
#include <vector>

// The systems that are known, by the names of the option --for.
std::vector<std::string> DeploymentSystems();

// The page for a system, in Markdown: tables and what is ready to paste. Throws std::invalid_argument for one that is
// not known.
std::string DeploymentPage(const std::string &system);
