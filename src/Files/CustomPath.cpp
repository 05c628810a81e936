#include "Files/CustomPath.h"

std::string ResolveCustomPath(const std::string &path, const std::string &productName)
{
    std::string shorter = path;
    const size_t at = productName.empty() ? std::string::npos : path.find(productName);
    if (at != std::string::npos) {
        shorter.erase(at, productName.size());
    }
    return shorter;
}
