# What a Windows user needs, and no more, as `cmake --install <build> --component windows` lays it out and
# scripts/windows.sh --package packs it. Included last, when all targets are known.
install(TARGETS workbench pluginManger ORVEX_API RUNTIME DESTINATION . COMPONENT windows)
install(TARGETS File_Process LIBRARY DESTINATION plugins COMPONENT windows)
install(DIRECTORY ${CMAKE_BINARY_DIR}/samples/ DESTINATION samples COMPONENT windows FILES_MATCHING PATTERN "*.tgz")
install(FILES ${PROJECT_SOURCE_DIR}/scripts/windows/package-readme.txt DESTINATION . RENAME README.txt
        COMPONENT windows)

install(FILES ${FILE_PROCESS_RUNTIME_DLLS} DESTINATION . COMPONENT windows)
foreach(_plugin ${FILE_PROCESS_QT_PLUGINS})
    get_filename_component(_folder ${_plugin} DIRECTORY)
    install(FILES ${_qt_plugins}/${_plugin} DESTINATION ${_folder} COMPONENT windows)
endforeach()
