#include "Companion.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string InTempFolder(const char *name)
{
    char folder[MAX_PATH + 1] = "";
    GetTempPathA(sizeof folder, folder);
    return std::string(folder) + name;
}

} // namespace

unsigned CarryOut(const char *request)
{
    if (FILE *log = std::fopen(InTempFolder("TavixCompanion.log").c_str(), "a")) {
        std::fprintf(log, "%s\n", request);
        std::fclose(log);
    }
    unsigned answer = 0;
    if (FILE *answers = std::fopen(InTempFolder("TavixCompanion.txt").c_str(), "r")) {
        bool found = false;
        for (char line[1024]; !found && std::fgets(line, sizeof line, answers) != nullptr;) {
            line[std::strcspn(line, "\n")] = '\0';
            char *text = line;
            answer = std::strtoul(line, &text, 10);
            found = std::strstr(request, *text == ' ' ? text + 1 : text) != nullptr;
        }
        std::fclose(answers);
        answer = found ? answer : 0;
    }
    return answer;
}
