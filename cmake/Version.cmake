# The generated header "version.h": the project's version for the sources, in target file_process_version.
set(_patch "00${PROJECT_VERSION_PATCH}")
string(LENGTH ${_patch} _length)
math(EXPR _skip "${_length} - 3")
string(SUBSTRING ${_patch} ${_skip} 3 _patch)
set(FILE_PROCESS_MODULE_VERSION "${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${_patch}")
configure_file(${PROJECT_SOURCE_DIR}/cmake/version.h.in ${PROJECT_BINARY_DIR}/generated/version.h @ONLY)

add_library(file_process_version INTERFACE)
target_include_directories(file_process_version INTERFACE ${PROJECT_BINARY_DIR}/generated)
