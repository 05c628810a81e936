# The portable sources. They include no Windows header, directly or through others; all other files of src/ call
# Windows and are found by themselves. One file a line, in alphabetical order.
set(TAVIX_CORE_SOURCES
    src/Actions/MultiString.cpp
    src/Actions/RegPath.cpp
    src/Common/CSystemState.cpp
    src/Common/DriverDate.cpp
    src/Common/DriverNames.cpp
    src/Common/Escapes.cpp
    src/Common/FileVersion.cpp
    src/Common/LanguageProvider.cpp
    src/Common/Numbers.cpp
    src/Common/PlatformRules.cpp
    src/Common/Status.cpp
    src/Common/StringUtilities.cpp
    src/Common/TextEncoding.cpp
    src/Common/TokenSplitter.cpp
    src/Common/TvxException.cpp
    src/Devices/DeviceIds.cpp
    src/Devices/DeviceTable.cpp
    src/Installer/CommandLine.cpp
    src/Installer/Macros.cpp
    src/Installer/OSVersion.cpp
    src/Installer/PreflightRules.cpp
    src/Installer/StepList.cpp
)
