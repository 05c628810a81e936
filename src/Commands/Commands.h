// The handlers of the script commands, by the file that defines them. A handler reads its fields in order from
// the step and calls the action of its family; its row stands in CommandTable.cpp.
#pragma once

class CStep;

// groups, flow and small commands: Commands/FlowCommands.cpp
void StepCommand(CStep &step);
void StepSetRebootFlag(CStep &step);
void StepIfRebootRequired(CStep &step);
void StepShowDialog(CStep &step);
void StepLog(CStep &step);
void StepLanguage(CStep &step);
void StepNULL(CStep &step);
void StepSetDefaultDebugFilePath(CStep &step);
void StepIsComment(CStep &step);
void StepGoTo(CStep &step);
void StepDONE(CStep &step);

// steps that wait: Commands/PauseCommands.cpp
void StepDelay(CStep &step);
void StepBreak(CStep &step);

// conditions on the machine: Commands/MachineConditionCommands.cpp
void StepNotExist(CStep &step);
void StepNotExistRedir(CStep &step);
void StepExist(CStep &step);
void StepExistRedir(CStep &step);
void StepIsXPPro(CStep &step);
void StepIsXPTE(CStep &step);
void StepOSVersion(CStep &step);

// flags and conditions on what the run knows: Commands/ConditionCommands.cpp
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
void StepIsInk(CStep &step);
void StepNotInk(CStep &step);
void StepIs64(CStep &step);
void StepNot64(CStep &step);
void StepCheckFlag(CStep &step);
void StepSetFlag(CStep &step);
void StepIsTouchPresent(CStep &step);
void StepIsPenPresent(CStep &step);

// earlier installations: Commands/EarlierCommands.cpp
void StepDetectPreISDSplit(CStep &step);
void StepIfVHIDObsolete(CStep &step);

// files and directories: Commands/FileCommands.cpp
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

// versions: Commands/VersionCommands.cpp
void StepIfNotOlder(CStep &step);
void StepIfKernelIsNotOlder(CStep &step);
void StepIfINFIsNotOlder(CStep &step);

// registry: Commands/RegistryCommands.cpp
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
void StepLinkValueFromFile(CStep &step);

// XML documents: Commands/XmlCommands.cpp
void StepMergeXml(CStep &step);
void StepMergeXmlRedir(CStep &step);
void StepMergeXmlCustom(CStep &step);

// shell links and display names: Commands/LinkCommands.cpp
void StepDeleteCustomLink(CStep &step);
void StepCreateLink(CStep &step);
void StepCreateLinkRedir(CStep &step);
void StepCreateLinkFromFile(CStep &step);
void StepSetDisplayName(CStep &step);
void StepRemoveDisplayNameRecursive(CStep &step);

// registration with the shell: Commands/ShellCommands.cpp
void StepProcessXMLData(CStep &step);
void StepCleanupXMLData(CStep &step);

// services: Commands/ServiceCommands.cpp
void StepStopService(CStep &step);
void StepStartService(CStep &step);

// programs and preferences: Commands/ProgramCommands.cpp
void StepExecute(CStep &step);
void StepExecuteRedir(CStep &step);
void StepExecuteAsync(CStep &step);
void StepExecuteStealth(CStep &step);
void StepDeleteAllPrefs(CStep &step);
void StepSetupUserHelpApp(CStep &step);
void StepRemoveUserHelpApp(CStep &step);

// device drivers through the companion: Commands/DriverCommands.cpp
void StepDevInstall(CStep &step);
void StepDevUpdate(CStep &step);
void StepDevInstallSelectedDriver(CStep &step);
void StepDevRemoveSelectedDriver(CStep &step);
void StepDevRemove(CStep &step);
void StepDevRemoveOEMINF(CStep &step);

// drivers of all devices found: Commands/RouterCommands.cpp
void StepInstallTvxHidRouter(CStep &step);
void StepInstallRouterFilter(CStep &step);
void StepInstallSiLabs(CStep &step);
void StepRemoveTvxHidRouter(CStep &step);
void StepRemoveSiLabs(CStep &step);
void StepShouldUninstallHidRouter(CStep &step);
void StepProNeedsHidRouter(CStep &step);
void StepConNeedsHidRouter(CStep &step);
void StepISDNeedsHidRouter(CStep &step);
void StepInstallBulkTouch(CStep &step);
void StepRemoveBulkTouch(CStep &step);

// pen class driver, properties of devices: Commands/DevicePropertyCommands.cpp
void StepInstallPenClass(CStep &step);
void StepRemovePenClass(CStep &step);
void StepChangeFriendlyName(CStep &step);
void StepQueryISDTabletSize(CStep &step);
void StepSetDeviceProperties(CStep &step);
