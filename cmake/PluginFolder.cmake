# add_plugin_folder(NAME source... )
#
# The sources of one folder of the plug-in, as the object library file_process_NAME.
function(add_plugin_folder name)
    add_library(file_process_${name} OBJECT ${ARGN})
    # The metadata's "debug" is false in every build.
    target_compile_definitions(file_process_${name} PRIVATE QT_NO_DEBUG FILE_PROCESS_MODULE)
    target_link_libraries(file_process_${name} PUBLIC file_process_interface file_process_platform
                          file_process_version Qt5::Widgets glog::glog)
endfunction()
