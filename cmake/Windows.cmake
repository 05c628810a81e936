# The product, and the tests that need Windows.
enable_language(RC)

target_compile_definitions(tavix_options INTERFACE LIBXML_STATIC)
# Line tables are enough for a stack trace, in the older form that Wine can read; the product's are split off below.
target_compile_options(tavix_options INTERFACE -g1 -gdwarf-4)

# Objects hold machine code besides the link-time form, so that tests link at once and the product is optimised whole.
set(lto -flto -ffat-lto-objects)

# The outer ring: everything that is neither portable nor the entry point.
file(GLOB_RECURSE platform_sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} src/*.cpp)
list(REMOVE_ITEM platform_sources ${TAVIX_CORE_SOURCES} src/Installer/WinMain.cpp)
list(FILTER platform_sources EXCLUDE REGEX ^src/Pack/)
add_library(tavix_platform OBJECT ${platform_sources} src/Resources/Setup.rc)
target_link_libraries(tavix_platform PUBLIC tavix_core)
target_compile_options(tavix_core PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${lto}>)
target_compile_options(tavix_platform PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${lto}>)
# The linker resolves imports by name before link-time optimisation shows it what this file defines.
set_source_files_properties(src/Common/OldWindowsImports.cpp PROPERTIES COMPILE_OPTIONS -fno-lto)
file(GLOB resource_files CONFIGURE_DEPENDS src/Resources/*.ico src/Resources/*.manifest)
set_source_files_properties(src/Resources/Setup.rc PROPERTIES OBJECT_DEPENDS "${resource_files}")

add_executable(TavixSetup WIN32 src/Installer/WinMain.cpp)
target_compile_options(TavixSetup PRIVATE ${lto})
target_link_libraries(TavixSetup PRIVATE tavix_platform tavix_core)
# Version 5.1 in the header is Windows XP.
target_link_options(TavixSetup PRIVATE -flto=auto -flto-partition=one -Os
    -Wl,--major-os-version,5,--minor-os-version,1,--major-subsystem-version,5,--minor-subsystem-version,1)

# What gets delivered, in bin/ beside the build folder: the program, the same file under its other name, its symbols.
set(bin ${CMAKE_BINARY_DIR}/../bin)
add_custom_command(OUTPUT ${bin}/TavixSetup.exe ${bin}/Remove.exe ${bin}/TavixSetup.debug
    COMMAND ${CMAKE_COMMAND} -E make_directory ${bin}
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:TavixSetup> ${bin}/TavixSetup.debug
    COMMAND ${CMAKE_OBJCOPY} --strip-all --add-gnu-debuglink=${bin}/TavixSetup.debug
        $<TARGET_FILE:TavixSetup> ${bin}/TavixSetup.exe
    COMMAND ${CMAKE_COMMAND} -E copy ${bin}/TavixSetup.exe ${bin}/Remove.exe
    DEPENDS TavixSetup VERBATIM)
add_custom_target(product ALL DEPENDS ${bin}/TavixSetup.exe)

# The package tool, a console program.
target_link_options(tavixpack PRIVATE -s -fno-lto)
set_target_properties(tavixpack PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${bin})
add_custom_target(tool ALL DEPENDS tavixpack)

# A program of the tests; it starts in a console. Nothing is made where there are no tests.
function(tavix_test_program name)
    if(ARGN)
        add_executable(${name} ${ARGN})
        target_link_libraries(${name} PRIVATE tavix_options GTest::gtest_main)
        target_link_options(${name} PRIVATE -fno-lto)
    endif()
endfunction()

# The portable tests once more, on the target.
tavix_test_program(unit_tests ${unit_sources})
if(TARGET unit_tests)
    target_link_libraries(unit_tests PRIVATE tavix_pack tavix_core tavix_unit_support)
endif()

# The product as a whole; this program knows only the executable.
tavix_split_tests(tests/system system_sources system_support_sources)
add_library(tavix_system_support STATIC ${system_support_sources})
target_link_libraries(tavix_system_support PUBLIC tavix_options GTest::gtest psapi)
tavix_test_program(system_tests ${system_sources})
if(TARGET system_tests)
    target_link_libraries(system_tests PRIVATE tavix_system_support)
    target_include_directories(system_tests SYSTEM PRIVATE ${JSON_INCLUDE})
endif()

# Functions of the outer ring against the real Windows; the helpers of the system tests serve here, too.
file(GLOB platform_test_sources CONFIGURE_DEPENDS tests/platform/*.cpp)
tavix_test_program(platform_tests ${platform_test_sources})
if(TARGET platform_tests)
    target_link_libraries(platform_tests PRIVATE tavix_system_support tavix_platform tavix_pack tavix_core)
endif()

add_custom_target(doubles ALL)

# tavix_double(NAME EXE|GUI|DLL SOURCE... [OUTPUT_NAME FILE] [FOLDER DIR]) makes a stand-in for something that no test
# machine has: a console program, a program without console or a library, doubles/[DIR/]FILE in the build folder.
function(tavix_double name kind)
    cmake_parse_arguments(double "" "OUTPUT_NAME;FOLDER" "" ${ARGN})
    if(kind STREQUAL "DLL")
        add_library(${name} SHARED ${double_UNPARSED_ARGUMENTS})
        set_target_properties(${name} PROPERTIES PREFIX "")
    elseif(kind STREQUAL "GUI")
        add_executable(${name} WIN32 ${double_UNPARSED_ARGUMENTS})
    else()
        add_executable(${name} ${double_UNPARSED_ARGUMENTS})
    endif()
    target_link_libraries(${name} PRIVATE tavix_options)
    target_link_options(${name} PRIVATE -s)
    add_dependencies(doubles ${name})
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/doubles/${double_FOLDER}
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/doubles/${double_FOLDER})
    if(double_OUTPUT_NAME)
        set_target_properties(${name} PROPERTIES OUTPUT_NAME ${double_OUTPUT_NAME})
    endif()
endfunction()

add_subdirectory(tests/doubles)
add_subdirectory(bench)
add_subdirectory(packages)
