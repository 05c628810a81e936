// The handlers of the script commands, by the file that defines them. A handler reads its fields in order from
// the step and calls the action of its family; its row stands in CommandTable.cpp.
#pragma once

class CStep;

// Stands in the rows of commands whose action this version does not have: says so in the trace.
void StepNotAvailable(CStep &step);

// groups, flow and small commands: Installer/StepCommands.cpp
void StepCommand(CStep &step);
void StepSetRebootFlag(CStep &step);
void StepIfRebootRequired(CStep &step);
void StepShowDialog(CStep &step);
void StepDelay(CStep &step);
void StepLog(CStep &step);
void StepLanguage(CStep &step);
void StepNULL(CStep &step);
void StepBreak(CStep &step);
void StepSetDefaultDebugFilePath(CStep &step);
void StepIsComment(CStep &step);
void StepGoTo(CStep &step);
void StepDONE(CStep &step);

// flags and conditions: Installer/Conditions.cpp
void StepNotExist(CStep &step);
void StepNotExistRedir(CStep &step);
void StepExist(CStep &step);
void StepExistRedir(CStep &step);
void StepProductIDIsAttached(CStep &step);
void StepProductIDIsNotAttached(CStep &step);
void StepIsWin8(CStep &step);
void StepIsWin7(CStep &step);
void StepIsVista(CStep &step);
void StepInstallTouchCheck(CStep &step);
void StepInstallPenCheck(CStep &step);
void StepInstallBothCheck(CStep &step);
void StepNoDriverRequired(CStep &step);
void StepIsXP(CStep &step);
void StepIsXPPro(CStep &step);
void StepIsXPTE(CStep &step);
void StepOSVersion(CStep &step);
void StepIsInk(CStep &step);
void StepNotInk(CStep &step);
void StepIs64(CStep &step);
void StepNot64(CStep &step);
void StepCheckFlag(CStep &step);
void StepSetFlag(CStep &step);
void StepIsTouchPresent(CStep &step);
void StepIsPenPresent(CStep &step);

// earlier installations: Installer/EarlierInstallation.cpp
void StepDetectPreISDSplit(CStep &step);
void StepIfVHIDObsolete(CStep &step);

// files and directories: Actions/FileCommands.cpp
void StepCopyFileIfNewerRedir(CStep &step);
void StepCopyFileIfNewer(CStep &step);
void StepCopyFile(CStep &step);
void StepCopyFileRedir(CStep &step);
void StepCopyFileCustom(CStep &step);
void StepCopyFileCustomRedir(CStep &step);
void StepCopyOEMINF(CStep &step);
void StepCopyDir(CStep &step);
void StepCreateDir(CStep &step);
void StepDeleteDir(CStep &step);
void StepDeleteDirRedir(CStep &step);
void StepDeleteDirContents(CStep &step);
void StepDeleteFile(CStep &step);
void StepDeleteFileRedir(CStep &step);
void StepDeleteFileCustom(CStep &step);
void StepDeleteFileReboot(CStep &step);

// versions: Actions/VersionCommands.cpp
void StepIfNotOlder(CStep &step);
void StepIfKernelIsNotOlder(CStep &step);
void StepIfINFIsNotOlder(CStep &step);

// registry: Actions/RegistryCommands.cpp
void StepRegNotExist(CStep &step);
void StepRegExist(CStep &step);
void StepCheckRegDWORD(CStep &step);
void StepRegValueString(CStep &step);
void StepRegValueStringRedir(CStep &step);
void StepRegValueMultiStringAppe(CStep &step);
void StepRegValueMultiStringAppeRedir(CStep &step);
void StepRegValueMultiStringDele(CStep &step);
void StepRegValueMultiStringDeleRedir(CStep &step);
void StepRegValueExpStr(CStep &step);
void StepRegValueDWORD(CStep &step);
void StepRegValueDWORDRedir(CStep &step);
void StepRegValueFromFile(CStep &step);
