# add_qt_test(NAME tst_x SOURCES a.cpp b.cpp LIBRARIES lib... [TIMEOUT seconds])
#
# One Qt Test program and the ctest entry that runs it. It needs no display, except on Windows: there a test that makes
# windows (its first source starts it with QTEST_MAIN) gets real ones, one such test at a time, because only one
# program can have the focus.
function(add_qt_test)
    cmake_parse_arguments(arg "" "NAME;TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${arg_NAME} ${arg_SOURCES})
    # Headers of the tests are included by their path from the project folder.
    target_include_directories(${arg_NAME} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${arg_NAME} PRIVATE ${arg_LIBRARIES} Qt5::Test)
    add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
        if(WIN32)
            set(arg_TIMEOUT 900) # files and windows are slow under Wine
        endif()
    endif()
    set_tests_properties(${arg_NAME} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    if(NOT WIN32)
        set_tests_properties(${arg_NAME} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
        return()
    endif()
    list(GET arg_SOURCES 0 main_source)
    file(STRINGS ${main_source} makes_windows REGEX "^QTEST_MAIN")
    if(makes_windows)
        set_tests_properties(${arg_NAME} PROPERTIES
            ENVIRONMENT "FILE_PROCESS_TEST_WINDOWS=1" RESOURCE_LOCK windows)
    endif()
endfunction()
