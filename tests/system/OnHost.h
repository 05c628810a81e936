// Commands of the system that Wine runs on, for what Windows programs cannot do there.
#pragma once

#include <string>

// The path as the host knows it; empty where there is no such host.
std::string HostPath(const std::string &path);

// Runs a command of the host's shell and answers whether it ended well; false where there is no such host.
bool OnHost(const std::string &command);
