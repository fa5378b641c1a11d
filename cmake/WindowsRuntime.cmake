# The libraries that Windows programs need beside them. Windows searches the program's own folder first, so the build's
# bin/ folder and the package hold a copy of each; nothing depends on the PATH.
#
# Included after find_package(Qt5) and find_package(glog). Sets FILE_PROCESS_RUNTIME_DLLS (paths) and adds the target
# `windows_runtime`, which copies them, and Qt's plug-ins, into bin/. MSVC builds get theirs from vcpkg.

set(FILE_PROCESS_RUNTIME_DLLS "")

# The shared library behind an imported target.
function(_file_process_imported_dll target result)
    foreach(config RELEASE MINSIZEREL RELWITHDEBINFO NOCONFIG DEBUG)
        get_target_property(dll ${target} IMPORTED_LOCATION_${config})
        if(dll)
            set(${result} ${dll} PARENT_SCOPE)
            return()
        endif()
    endforeach()
    get_target_property(dll ${target} IMPORTED_LOCATION)
    set(${result} ${dll} PARENT_SCOPE)
endfunction()

foreach(_target Qt5::Core Qt5::Gui Qt5::Widgets Qt5::PrintSupport glog::glog)
    _file_process_imported_dll(${_target} _dll)
    list(APPEND FILE_PROCESS_RUNTIME_DLLS ${_dll})
endforeach()

# The compiler's own libraries, and those of its packages.
foreach(_name libstdc++-6.dll libgcc_s_seh-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${_name} OUTPUT_VARIABLE _dll
                    OUTPUT_STRIP_TRAILING_WHITESPACE)
    list(APPEND FILE_PROCESS_RUNTIME_DLLS ${_dll})
endforeach()
foreach(_name libwinpthread-1.dll zlib1.dll sqlite3.dll 7z.dll)
    find_file(FILE_PROCESS_${_name} ${_name} PATHS ${CMAKE_FIND_ROOT_PATH} PATH_SUFFIXES lib bin
              NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    if(NOT FILE_PROCESS_${_name})
        message(FATAL_ERROR "${_name} was not found below ${CMAKE_FIND_ROOT_PATH}; scripts/windows.sh provides it")
    endif()
    list(APPEND FILE_PROCESS_RUNTIME_DLLS ${FILE_PROCESS_${_name}})
endforeach()

# Qt's plug-ins: windows for people, offscreen for tests and batch runs, the native look, and the system's printers.
get_filename_component(_qt_bin ${Qt5Core_DIR}/../../../bin ABSOLUTE)
get_filename_component(_qt_plugins ${Qt5Core_DIR}/../../../plugins ABSOLUTE)
set(FILE_PROCESS_QT_PLUGINS platforms/qwindows.dll platforms/qoffscreen.dll styles/qwindowsvistastyle.dll
    printsupport/windowsprintersupport.dll)

set(_copies "")
foreach(_dll ${FILE_PROCESS_RUNTIME_DLLS} ${_qt_bin}/Qt5Test.dll)
    list(APPEND _copies COMMAND ${CMAKE_COMMAND} -E copy_if_different ${_dll} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/)
endforeach()
foreach(_plugin ${FILE_PROCESS_QT_PLUGINS})
    get_filename_component(_folder ${_plugin} DIRECTORY)
    list(APPEND _copies
         COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${_folder}
         COMMAND ${CMAKE_COMMAND} -E copy_if_different ${_qt_plugins}/${_plugin}
                 ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${_folder}/)
endforeach()
add_custom_target(windows_runtime ALL
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
    ${_copies} COMMENT "Copying the Windows libraries beside the programs" VERBATIM)
