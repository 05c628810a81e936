#include "Devices/RouterProgram.h"

#include "Common/Redirection.h"
#include "Common/TextConversions.h"
#include "Common/WinFileVersion.h"
#include "Files/FileExists.h"

RouterProgram LookUpRouterProgram(const std::string &path)
{
    RouterProgram program;
    program.mExists = FileExistsStep(path, true);
    if (program.mExists) {
        const STDisableRedirect redirect(true);
        program.mVersion = ReadProductVersion(AnsiToUtf8(path));
    }
    return program;
}
