# What Windows does not bring along: the libraries beside the program, Qt's plug-ins, and the terms of all of them.
install(FILES ${FILE_PROCESS_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
foreach(_plugin ${FILE_PROCESS_QT_PLUGINS})
    get_filename_component(_folder ${_plugin} DIRECTORY)
    install(FILES ${_qt_plugins}/${_plugin} DESTINATION ${CMAKE_INSTALL_BINDIR}/${_folder} COMPONENT runtime)
endforeach()
install(DIRECTORY ${FILE_PROCESS_WINDOWS_DEPS}/prefix/licences DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
