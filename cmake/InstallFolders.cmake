# Where `cmake --install` puts things, below the prefix. An installed tree works wherever it is moved: programs and libraries
# find each other by paths relative to themselves.
#
# On Linux the libraries are in a folder of their own: their names carry no version, because hosts know them by these.
# On Windows a program, its libraries and its plug-ins share one folder, which is the prefix itself.
if(WIN32)
    set(CMAKE_INSTALL_BINDIR "." CACHE PATH "Programs and their libraries")
    set(CMAKE_INSTALL_DATADIR "." CACHE PATH "Samples")
    set(CMAKE_INSTALL_DOCDIR "." CACHE PATH "Notices")
else()
    set(CMAKE_INSTALL_DOCDIR share/doc/file-process CACHE PATH "Notices")
endif()
include(GNUInstallDirs)

set(FILE_PROCESS_INSTALL_HEADERS ${CMAKE_INSTALL_INCLUDEDIR}/file_process)
if(WIN32)
    set(FILE_PROCESS_INSTALL_LIBRARIES ${CMAKE_INSTALL_BINDIR})
    set(FILE_PROCESS_INSTALL_PLUGINS ${CMAKE_INSTALL_BINDIR}/plugins)
    set(FILE_PROCESS_INSTALL_SAMPLES ${CMAKE_INSTALL_DATADIR}/samples)
else()
    set(FILE_PROCESS_INSTALL_LIBRARIES ${CMAKE_INSTALL_LIBDIR}/file_process)
    set(FILE_PROCESS_INSTALL_PLUGINS ${FILE_PROCESS_INSTALL_LIBRARIES}/plugins)
    set(FILE_PROCESS_INSTALL_SAMPLES ${CMAKE_INSTALL_DATADIR}/file_process/samples)
endif()

# relative_install_path(RESULT FROM TO): the way between two of these folders.
function(relative_install_path result from to)
    file(RELATIVE_PATH path "/prefix/${from}" "/prefix/${to}")
    set(${result} "${path}" PARENT_SCOPE)
endfunction()
relative_install_path(_libraries ${CMAKE_INSTALL_BINDIR} ${FILE_PROCESS_INSTALL_LIBRARIES})
relative_install_path(_from_plugins ${FILE_PROCESS_INSTALL_PLUGINS} ${FILE_PROCESS_INSTALL_LIBRARIES})
# From a program's folder, for the workbench.
relative_install_path(FILE_PROCESS_PLUGINS_FROM_PROGRAM ${CMAKE_INSTALL_BINDIR} ${FILE_PROCESS_INSTALL_PLUGINS})
set(FILE_PROCESS_PROGRAM_RPATH "$ORIGIN/${_libraries}")
set(FILE_PROCESS_PLUGIN_RPATH "$ORIGIN/${_from_plugins}")
