// Script files of a test: texts by file name, read as plainly as it goes.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "Script/ScriptFiles.h"

class CFakeProfile : public IProfileReader {
public:
    // Files by name, sections by name, lines. A file that is not here cannot be opened.
    std::map<std::string, std::map<std::string, std::string>> mFiles;
    std::string mMainScript = "main";
    int mLocated = 0;

    bool CanOpen(const std::string &file) override { return mFiles.count(file) != 0; }
    uint32_t ReadSection(const std::string &file, const std::string &section, char *buffer_O, uint32_t size) override
    {
        std::string lines = mFiles[file][section];
        std::replace(lines.begin(), lines.end(), '\n', '\0');
        const uint32_t length = std::min(static_cast<uint32_t>(lines.size()), size - 2);
        std::memcpy(buffer_O, lines.data(), length);
        return length;
    }
    uint32_t ReadValue(const std::string &file, const std::string &section, const std::string &key,
                       const std::string &defaultValue, char *buffer_O, uint32_t size) override
    {
        const std::string lines = "\n" + mFiles[file][section];
        const size_t at = lines.find("\n" + key + "=");
        std::string value = defaultValue;
        if (at != std::string::npos) {
            const size_t from = at + key.size() + 2;
            value = lines.substr(from, lines.find('\n', from) - from);
        }
        value.resize(std::min<size_t>(value.size(), size - 1));
        std::memcpy(buffer_O, value.c_str(), value.size() + 1);
        return static_cast<uint32_t>(value.size());
    }
    uint32_t ReadNumber(const std::string &file, const std::string &section, const std::string &key,
                        uint32_t defaultValue) override
    {
        char text[100];
        const bool any = ReadValue(file, section, key, "", text, sizeof text) != 0;
        return any ? static_cast<uint32_t>(std::atoi(text)) : defaultValue;
    }
    std::string MainScript() override
    {
        ++mLocated;
        return mMainScript;
    }
};
