# Compiles through ccache where it is installed, so that a second checkout need not compile the same sources again:
# paths below the source folder are taken as relative ones.
find_program(FILE_PROCESS_CCACHE ccache)
if(FILE_PROCESS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
        CCACHE_COMPILERCHECK=content ${FILE_PROCESS_CCACHE})
endif()
