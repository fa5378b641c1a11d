# Toolchain: 64-bit Windows programs from Debian's or Ubuntu's MinGW-w64, whose "posix" flavour has std::thread and
# std::mutex. What scripts/windows/dependencies.sh builds is found in the folder FILE_PROCESS_WINDOWS_DEPS names.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(DEFINED ENV{FILE_PROCESS_WINDOWS_DEPS})
    set(_deps "$ENV{FILE_PROCESS_WINDOWS_DEPS}")
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(_deps "$ENV{XDG_CACHE_HOME}/file_process/windows")
else()
    set(_deps "$ENV{HOME}/.cache/file_process/windows")
endif()
# Kept in the build folder's cache: a later run of CMake without the variable must not look elsewhere.
set(FILE_PROCESS_WINDOWS_DEPS "${_deps}" CACHE PATH "Folder with Qt, glog and the other libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES FILE_PROCESS_WINDOWS_DEPS)

set(CMAKE_FIND_ROOT_PATH "${FILE_PROCESS_WINDOWS_DEPS}/prefix" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests and other programs of the build run under Wine.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../scripts/windows/run-under-wine.sh")
