#include "Files/FileExists.h"

#include "Common/Redirection.h"
#include "Common/Paths.h"
#include "Common/Trace.h"
#include "Files/CustomPath.h"

bool FileExistsStep(const std::string &path, bool disableRedirect)
{
    const STDisableRedirect redirect(disableRedirect);
    // The text of the redirection brings its own ", 64 ", which then stands twice. Readers of the file know it so.
    trace(7, "File %s, 64 %s\n", path.c_str(), redirect.TraceText());
    return PathExists(path);
}

std::string CustomPath(const std::string &path, const std::string &productName)
{
    return FileExistsStep(path, true) ? path : ResolveCustomPath(path, productName);
}
