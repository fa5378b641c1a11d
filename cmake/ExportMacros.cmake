# add_export_macro(TARGET MACRO HEADER [DEFINE])
#
# Generates <build>/generated/HEADER, which defines MACRO: what makes a name visible outside of TARGET while it is compiled,
# and imports it elsewhere. Whoever defines MACRO first keeps his: a stand-in for the library that has the same header.
# DEFINE is the definition that says "compiled here", for a target whose sources are compiled as parts of other targets.
include(GenerateExportHeader)

function(add_export_macro target macro header)
    if(ARGC GREATER 3)
        set_target_properties(${target} PROPERTIES DEFINE_SYMBOL ${ARGV3})
    endif()
    string(MAKE_C_IDENTIFIER ${header} guard)
    string(TOUPPER FILE_PROCESS_GENERATED_${guard} guard)
    generate_export_header(${target}
        EXPORT_MACRO_NAME ${macro}
        EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/generated/${header}
        NO_EXPORT_MACRO_NAME ${macro}_HIDDEN
        DEPRECATED_MACRO_NAME ${macro}_DEPRECATED
        STATIC_DEFINE ${macro}_STATIC
        INCLUDE_GUARD_NAME ${guard})
endfunction()
