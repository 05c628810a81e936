#include "Actions/CustomPath.h"

#include "Actions/FileExists.h"
#include "Installer/CWinInstallMain.h"

std::string CustomPath(const CWinInstallMain &main, const std::string &path)
{
    return FileExistsStep(path, true) ? path : main.ResolveCustomPath(path);
}

// The layout of an OEM package is that of the plain one less the folder, or the part of a name, that is
// called after the product. The separators around the name stay: Windows takes two for one.
std::string CWinInstallMain::ResolveCustomPath(const std::string &path) const
{
    std::string shorter = path;
    const size_t at = mProductName.empty() ? std::string::npos : path.find(mProductName);
    if (at != std::string::npos) {
        shorter.erase(at, mProductName.size());
    }
    return shorter;
}
