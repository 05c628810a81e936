# The host's build: unit tests and fuzzers of the portable part, stopping at the first thing that a sanitizer finds.
set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all)
target_compile_options(tavix_options INTERFACE ${sanitize} -O1 -g -fno-omit-frame-pointer)
target_link_options(tavix_options INTERFACE ${sanitize})

if(unit_sources)
    add_executable(unit_tests ${unit_sources})
    target_link_libraries(unit_tests PRIVATE tavix_pack tavix_core tavix_unit_support GTest::gtest_main)
endif()

# Each file of tests/fuzz is a fuzzer of its own, with its corpus in tests/fuzz/corpus/NAME. libFuzzer comes with clang.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(tavix_core PRIVATE -fsanitize=fuzzer-no-link)
    target_compile_options(tavix_pack PRIVATE -fsanitize=fuzzer-no-link)
    file(GLOB fuzz_sources CONFIGURE_DEPENDS tests/fuzz/*.cpp)
    foreach(source IN LISTS fuzz_sources)
        cmake_path(GET source STEM name)
        add_executable(fuzz_${name} ${source})
        target_compile_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
        target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
        target_link_libraries(fuzz_${name} PRIVATE tavix_pack tavix_core tavix_unit_support)
        set_target_properties(fuzz_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
    endforeach()
endif()
