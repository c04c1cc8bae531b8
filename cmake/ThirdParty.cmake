# Libraries of others, for the folders of core/.

# quillmark_third_party(<target> MODULES <pkg-config module>... [NEEDS <module>...])
#
# An interface target for libraries that pkg-config knows. Programs with the property
# QUILLMARK_STATIC get the static libraries, if all of them are installed; other programs get the
# shared ones. NEEDS are modules that only the static libraries ask for. The target property
# QUILLMARK_IS_STATIC tells whether there is a choice.
#
# A check of one small document takes a few milliseconds; to find and relocate twenty shared
# libraries would take longer than that, for every file that a script hands to the program.
function(quillmark_third_party target)
    cmake_parse_arguments(ARG "" "" "MODULES;NEEDS" ${ARGN})
    pkg_check_modules(${target} REQUIRED IMPORTED_TARGET ${ARG_MODULES})
    pkg_check_modules(${target}_ALONE QUIET ${ARG_MODULES} ${ARG_NEEDS})
    set(archives)
    set(is_static ${${target}_ALONE_FOUND})
    foreach(library IN LISTS ${target}_ALONE_LINK_LIBRARIES)
        string(REGEX REPLACE "\\.so$" ".a" archive ${library})
        list(APPEND archives ${archive})
        if(NOT EXISTS ${archive})
            set(is_static OFF)
        endif()
    endforeach()

    add_library(${target} INTERFACE)
    set_target_properties(${target} PROPERTIES QUILLMARK_IS_STATIC "${is_static}")
    target_include_directories(${target} SYSTEM INTERFACE ${${target}_INCLUDE_DIRS})
    if(is_static)
        # Asked of the program that is linked, not of the library in between.
        set(wanted $<BOOL:$<TARGET_PROPERTY:QUILLMARK_STATIC>>)
        target_link_libraries(${target} INTERFACE
            "$<${wanted}:${archives}>" $<$<NOT:${wanted}>:PkgConfig::${target}>)
    else()
        target_link_libraries(${target} INTERFACE PkgConfig::${target})
    endif()
endfunction()

include(CheckLinkerFlag)
check_linker_flag(CXX -Wl,-z,pack-relative-relocs QUILLMARK_PACKS_RELOCATIONS)

# quillmark_quick_start(<program>)
#
# For a program that is started for each of many files: with no more shared libraries than the
# system's own, and little to relocate.
function(quillmark_quick_start program)
    set_target_properties(${program} PROPERTIES QUILLMARK_STATIC ON)
    target_link_options(${program} PRIVATE -Wl,--gc-sections)
    get_target_property(icu_is_static quillmark_icu QUILLMARK_IS_STATIC)
    get_target_property(qpdf_is_static quillmark_qpdf QUILLMARK_IS_STATIC)
    if(icu_is_static AND qpdf_is_static AND NOT QUILLMARK_SANITIZE)
        # No other library in it is of C++, so that no exception passes from one copy to another.
        target_link_options(${program} PRIVATE -static-libstdc++ -static-libgcc)
    endif()
    if(QUILLMARK_PACKS_RELOCATIONS)
        target_link_options(${program} PRIVATE -Wl,-z,pack-relative-relocs)
    endif()
endfunction()
