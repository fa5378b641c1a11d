# `cmake --install`: component "runtime" is what a user needs, "development" what a host is built with. Included last, when
# all targets are known.
include(CMakePackageConfigHelpers)

# --- runtime ------------------------------------------------------------------------------------------------------------
set(_programs workbench)
if(TARGET camconvert)
    list(APPEND _programs camconvert)
endif()
set_target_properties(${_programs} PROPERTIES INSTALL_RPATH "${FILE_PROCESS_PROGRAM_RPATH}")
set_target_properties(File_Process PROPERTIES INSTALL_RPATH "${FILE_PROCESS_PLUGIN_RPATH}")
install(TARGETS ${_programs} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(TARGETS File_Process LIBRARY DESTINATION ${FILE_PROCESS_INSTALL_PLUGINS} COMPONENT runtime)
install(DIRECTORY ${PROJECT_BINARY_DIR}/samples/ DESTINATION ${FILE_PROCESS_INSTALL_SAMPLES} COMPONENT runtime
        FILES_MATCHING PATTERN "*.tgz" PATTERN "CMakeFiles" EXCLUDE)

set(_notices ${PROJECT_SOURCE_DIR}/cmake/package/NOTICES.txt)
if(WIN32)
    # Notepad of older Windows shows nothing but these line ends.
    configure_file(${_notices} ${PROJECT_BINARY_DIR}/NOTICES.txt @ONLY NEWLINE_STYLE CRLF)
    install(FILES ${PROJECT_BINARY_DIR}/NOTICES.txt DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/package/windows-readme.txt ${PROJECT_BINARY_DIR}/README.txt
                   @ONLY NEWLINE_STYLE CRLF)
    install(FILES ${PROJECT_BINARY_DIR}/README.txt DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
else()
    # The name that Debian's rules give it.
    install(FILES ${_notices} DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright COMPONENT runtime)
    set(_desktop ${PROJECT_SOURCE_DIR}/src/resources/desktop)
    install(FILES ${_desktop}/file_process-workbench.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
            COMPONENT runtime)
    install(FILES ${_desktop}/file_process-workbench.svg
            DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT runtime)
    foreach(_size 48 128)
        install(FILES ${_desktop}/file_process-workbench-${_size}.png RENAME file_process-workbench.png
                DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${_size}x${_size}/apps COMPONENT runtime)
    endforeach()
    file(GLOB _manuals ${PROJECT_SOURCE_DIR}/docs/man/*.1)
    install(FILES ${_manuals} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
    install(FILES ${PROJECT_SOURCE_DIR}/src/convert/camconvert.bash RENAME camconvert
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT runtime)
endif()

# --- development --------------------------------------------------------------------------------------------------------
set_target_properties(file_process_interface PROPERTIES EXPORT_NAME Interface)
set_target_properties(pluginManger PROPERTIES EXPORT_NAME PluginManager)
set_target_properties(ORVEX_API PROPERTIES EXPORT_NAME Cam)
install(TARGETS file_process_interface pluginManger ORVEX_API EXPORT FileProcessTargets
        RUNTIME DESTINATION ${FILE_PROCESS_INSTALL_LIBRARIES} COMPONENT runtime
        LIBRARY DESTINATION ${FILE_PROCESS_INSTALL_LIBRARIES} COMPONENT runtime
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# What a host includes, and what that includes in turn.
set(_to_do
    run/orvexapi.h
    cam/jobroot.h
    cam/exportobserver.h
    pluginmanger/pluginhost.h)
set(_headers "")
while(_to_do)
    list(POP_FRONT _to_do _header)
    if(_header IN_LIST _headers OR NOT EXISTS ${PROJECT_SOURCE_DIR}/src/${_header} OR _header MATCHES "^plugin/interface/")
        continue()
    endif()
    list(APPEND _headers ${_header})
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS src/${_header})
    file(STRINGS ${PROJECT_SOURCE_DIR}/src/${_header} _includes REGEX "^#include \"")
    foreach(_include ${_includes})
        string(REGEX REPLACE "^#include \"([^\"]*)\".*" "\\1" _include ${_include})
        list(APPEND _to_do ${_include})
    endforeach()
endwhile()
foreach(_header ${_headers})
    get_filename_component(_folder ${_header} DIRECTORY)
    install(FILES ${PROJECT_SOURCE_DIR}/src/${_header} DESTINATION ${FILE_PROCESS_INSTALL_HEADERS}/${_folder}
            COMPONENT development)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/plugin/interface/ DESTINATION ${FILE_PROCESS_INSTALL_HEADERS}/plugin/interface
        COMPONENT development FILES_MATCHING PATTERN "*.h")
foreach(_header plugin/interface/pluginmanager_export.h run/orvexapi_export.h)
    get_filename_component(_folder ${_header} DIRECTORY)
    install(FILES ${PROJECT_BINARY_DIR}/generated/${_header} DESTINATION ${FILE_PROCESS_INSTALL_HEADERS}/${_folder}
            COMPONENT development)
endforeach()

set(_package ${CMAKE_INSTALL_LIBDIR}/cmake/FileProcess)
install(EXPORT FileProcessTargets NAMESPACE FileProcess:: DESTINATION ${_package} COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package/FileProcessConfig.cmake.in
    ${PROJECT_BINARY_DIR}/FileProcessConfig.cmake.gen
    INSTALL_DESTINATION ${_package} PATH_VARS FILE_PROCESS_INSTALL_PLUGINS FILE_PROCESS_INSTALL_SAMPLES)
# The module's file name is known when the build is generated.
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/FileProcessConfig.cmake INPUT ${PROJECT_BINARY_DIR}/FileProcessConfig.cmake.gen)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/FileProcessConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/FileProcessConfig.cmake ${PROJECT_BINARY_DIR}/FileProcessConfigVersion.cmake
        DESTINATION ${_package} COMPONENT development)
