# The package tool for the host, optimised and by itself: bin/tavixpack beside the build folder.
target_link_options(tavixpack PRIVATE -s)
set_target_properties(tavixpack PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/../bin)
add_custom_target(tool DEPENDS tavixpack)
