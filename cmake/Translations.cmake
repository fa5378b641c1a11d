# add_translations(TARGET) puts the texts of src/resources/translations, and Qt's own where this machine has them, into
# TARGET as the resource "translations", below ":/translations/". The host's lrelease makes them, whatever the target is.
find_program(LRELEASE NAMES lrelease-qt5 lrelease HINTS /usr/lib/qt5/bin REQUIRED)

function(add_translations target)
    set(files "")
    set(entries "")
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/resources/translations/*.ts)
    foreach(source ${sources})
        get_filename_component(name ${source} NAME_WE)
        set(made ${CMAKE_CURRENT_BINARY_DIR}/translations/${name}.qm)
        add_custom_command(OUTPUT ${made} COMMAND ${LRELEASE} -silent -removeidentical ${source} -qm ${made}
                           DEPENDS ${source} VERBATIM)
        list(APPEND files ${made})
        string(APPEND entries "<file alias=\"${name}.qm\">${made}</file>")
        # The buttons and dialogs of Qt itself.
        string(REPLACE "workbench_" "qtbase_" qt_name ${name})
        find_file(${qt_name}_texts ${qt_name}.qm PATHS /usr/share/qt5/translations ${Qt5_DIR}/../../../translations
                  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
        if(${qt_name}_texts)
            string(APPEND entries "<file alias=\"${qt_name}.qm\">${${qt_name}_texts}</file>")
        endif()
    endforeach()
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/translations/translations.qrc)
    file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/translations)
    file(CONFIGURE OUTPUT ${resource} CONTENT "<RCC><qresource prefix=\"/translations\">${entries}</qresource></RCC>\n")
    set(code ${CMAKE_CURRENT_BINARY_DIR}/translations/qrc_translations.cpp)
    add_custom_command(OUTPUT ${code} COMMAND Qt5::rcc --name translations --output ${code} ${resource}
                       DEPENDS ${resource} ${files} VERBATIM)
    set_source_files_properties(${code} PROPERTIES SKIP_AUTOGEN ON)
    target_sources(${target} PRIVATE ${code})
endfunction()
