// The script's commands on XML documents.
#include <windows.h>

#include "Commands/Commands.h"
#include "Common/Trace.h"
#include "Files/CustomPath.h"
#include "Files/FileCopy.h"
#include "Script/CRunState.h"
#include "Script/Step.h"
#include "Shell/XmlMerge.h"
#include "Shell/XmlUtils.h"

namespace {

std::string TemporaryFile()
{
    char folder[1024] = "";
    char name[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    GetTempFileNameA(folder, "tvx", 0, name);
    return name;
}

// Merges a file into another one, or puts a copy of it there when no document is found. Both are read as a 32-bit
// process sees them; `disableRedirect` is for the copy that ends it.
void MergeXml(const std::string &source, const std::string &destination, bool disableRedirect, bool &rebootRequired_I_O)
{
    std::string fromPath = source;
    trace(7, "Source xml %s\n", source.c_str());
    XmlUtils::XmlDoc srcDoc = XmlUtils::LoadXmlFile(source);
    if (!srcDoc) {
        trace(7, "Couldn't load source XML\n");
        return;
    }
    XmlUtils::XmlDoc destDoc = XmlUtils::LoadXmlFile(destination);
    if (destDoc) {
        trace(7, "Dest file '%s' exists; merging\n", destination.c_str());
        MergeXmlDocuments(destDoc.get(), srcDoc.get());
        fromPath = TemporaryFile();
        XmlUtils::SaveXmlDocument(fromPath, destDoc.get(), false);
        destDoc.reset();
    }
    srcDoc.reset();
    CopyFileCore(fromPath, destination, disableRedirect, rebootRequired_I_O);
    if (fromPath != source) {
        DeleteFileA(fromPath.c_str());
    }
}

void MergeStep(CStep &step, bool disableRedirect)
{
    const std::string source = step.Expanded();
    const std::string destination = step.Expanded();
    MergeXml(source, destination, disableRedirect, step.Main().mRebootRequired);
}

} // namespace

void StepMergeXml(CStep &step)
{
    MergeStep(step, true);
}

void StepMergeXmlRedir(CStep &step)
{
    MergeStep(step, false);
}

void StepMergeXmlCustom(CStep &step)
{
    const std::string source = CustomPath(step.Expanded(), step.Main().mProductName);
    const std::string destination = step.Expanded();
    MergeXml(source, destination, false, step.Main().mRebootRequired);
}
