# add_qt_test(NAME tst_x SOURCES a.cpp b.cpp LIBRARIES lib... [WINDOWS] [TIMEOUT seconds])
#
# One Qt Test program and the ctest entry that runs it without a display. WINDOWS marks a test whose windows must be
# real ones where the platform has them (the Windows build runs it under an X server).
function(add_qt_test)
    cmake_parse_arguments(arg "WINDOWS" "NAME;TIMEOUT" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${arg_NAME} ${arg_SOURCES})
    target_link_libraries(${arg_NAME} PRIVATE ${arg_LIBRARIES} Qt5::Test)
    add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    set_tests_properties(${arg_NAME} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    if(NOT WIN32)
        set_tests_properties(${arg_NAME} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
    elseif(arg_WINDOWS)
        set_tests_properties(${arg_NAME} PROPERTIES ENVIRONMENT "FILE_PROCESS_TEST_WINDOWS=1")
    endif()
endfunction()
