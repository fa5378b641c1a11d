# CPack: the Debian packages file-process and file-process-dev, and the Windows zip. Both are made of what
# `cmake --install` puts where. scripts/package.sh makes them.
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_COMPONENTS_ALL runtime)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_ARCHIVE_RUNTIME_FILE_NAME File_Process-${PROJECT_VERSION}-win64)
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_COMPONENTS_ALL runtime development)
endif()
set(CPACK_PACKAGE_NAME File_Process)
set(CPACK_PACKAGE_VENDOR "The File_Process developers")
set(CPACK_PACKAGE_CONTACT "The File_Process developers <file-process@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Import of ODB++ jobs and export of their layers as GDSII and Gerber")
set(CPACK_PACKAGE_FILE_NAME File_Process-${PROJECT_VERSION}-win64)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)

# 7-Zip's library is loaded at run time by name, so that no tool finds it among the libraries that the files need.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME file-process)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "p7zip-full, fonts-dejavu-core")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME file-process-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)

include(CPack)
cpack_add_component(runtime DISPLAY_NAME "File_Process" DESCRIPTION
"A plug-in of desktop CAM programs for printed-circuit boards, with the
workbench, a small such program: it imports ODB++ job archives, shows their
layers, and writes them as GDSII and RS-274X Gerber files.")
cpack_add_component(development DISPLAY_NAME "File_Process for hosts" DEPENDS runtime DESCRIPTION
"Headers and a CMake package to build a host of the File_Process plug-in.")
