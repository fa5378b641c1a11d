# Warnings are errors; sanitizers when they are asked for.
if(MSVC)
    # No machine of this project runs this compiler, so a warning that only it has keeps nobody from building.
    # 4251 and 4275 warn of standard-library members and bases in exported classes: host and plug-in are built with
    # one compiler and share its library, so that these have one layout.
    add_compile_options(/W4 /permissive- /utf-8 /Zc:__cplusplus /wd4251 /wd4275)
    add_compile_definitions(_CRT_SECURE_NO_WARNINGS NOMINMAX)
else()
    add_compile_options(-Wall -Wextra -Wpedantic -Werror -Wnon-virtual-dtor -Woverloaded-virtual)
endif()
add_compile_definitions(QT_DEPRECATED_WARNINGS QT_DISABLE_DEPRECATED_BEFORE=0x050900)
if(WIN32)
    add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)
endif()

if(FILE_PROCESS_SANITIZE)
    add_compile_options(-fsanitize=${FILE_PROCESS_SANITIZE} -fno-omit-frame-pointer -g)
    add_link_options(-fsanitize=${FILE_PROCESS_SANITIZE})
    if(FILE_PROCESS_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()
