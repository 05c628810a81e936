// A program that loads the libraries named on its command line as programs usually do, by their bare names. Answers how
// many it could not load.
#include <windows.h>

int main(int count, char **names)
{
    int missing = 0;
    for (int at = 1; at < count; ++at) {
        missing += LoadLibraryA(names[at]) == nullptr ? 1 : 0;
    }
    return missing;
}
