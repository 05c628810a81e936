# Builds for 32-bit Windows: from Linux with the cross compiler, on Windows with the MinGW that stands in the path.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)

if(NOT CMAKE_HOST_WIN32)
    # The posix flavour: the other one lacks std::mutex.
    set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
    set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
    set(CMAKE_AR i686-w64-mingw32-gcc-ar-posix)
    set(CMAKE_RANLIB i686-w64-mingw32-gcc-ranlib-posix)
    set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
    set(CMAKE_FIND_ROOT_PATH "${CMAKE_CURRENT_LIST_DIR}/../.deps/target")
    set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
    set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
endif()

# The executable starts on Windows XP: nothing newer is declared, and what is newer gets bound at run time. Sections
# are apart so that the linker can drop what nobody calls.
set(flags "-D_WIN32_WINNT=0x0501 -DWINVER=0x0501 -ffunction-sections -fdata-sections")
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--gc-sections")
