# What every target of ours shares: the language, the warnings, the hardening and the sanitizers.
# A target links quillmark_common PRIVATE; third-party headers come in as SYSTEM and stay quiet.

include(GNUInstallDirs)
set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/quillmark)
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # What it has to overlook to keep anything that was compiled with precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(quillmark_common INTERFACE)
target_compile_features(quillmark_common INTERFACE cxx_std_20)
target_compile_options(quillmark_common INTERFACE
    -Wall
    -Wextra
    -Wpedantic
    -Wconversion
    -Wsign-conversion
    -Wshadow
    -Wnon-virtual-dtor
    -Wold-style-cast
    -Woverloaded-virtual
    -Wundef
    -Wswitch
    -fstack-protector-strong
    $<$<BOOL:${QUILLMARK_WERROR}>:-Werror>
)
# The same program wherever it is built: no folder of the builder's is in it.
target_compile_options(quillmark_common INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=quillmark>
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>
)
target_compile_definitions(quillmark_common INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>
    $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>
)
target_link_options(quillmark_common INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--as-needed)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(QUILLMARK_SANITIZE)
    target_compile_options(quillmark_common INTERFACE
        -fsanitize=${QUILLMARK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quillmark_common INTERFACE -fsanitize=${QUILLMARK_SANITIZE})
    # The fortified string functions hide what AddressSanitizer wants to see.
    target_compile_options(quillmark_common INTERFACE -U_FORTIFY_SOURCE)
    if(QUILLMARK_SANITIZE STREQUAL thread)
        # With the calls that ThreadSanitizer puts in, GCC takes sound optionals for unset ones.
        target_compile_options(quillmark_common INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()

# quillmark_precompiled(<target> <header>...|REUSE_FROM <other>)
#
# Precompiled headers for a target whose sources are short beside what they include.
function(quillmark_precompiled target)
    if(ARGV1 STREQUAL REUSE_FROM)
        target_precompile_headers(${target} ${ARGN})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
    # ccache understands them in no other way.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
endfunction()

# quillmark_core_library(<folder> SOURCES ... [LINKS ...] [PRIVATE_LINKS ...])
#
# One static library for one folder of core/ or app/. Its headers are included as "<folder>/Header.h". Each
# library exposes only its own folder, through a directory of links made here, so that a folder can
# include exactly the folders whose targets it links: anything else fails to compile.
function(quillmark_core_library folder)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    set(target quillmark_${folder})
    set(include_root ${PROJECT_BINARY_DIR}/include/${folder})
    file(MAKE_DIRECTORY ${include_root})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${include_root}/${folder} SYMBOLIC)
    add_library(${target} STATIC ${ARG_SOURCES})
    target_include_directories(${target} PUBLIC ${include_root})
    target_link_libraries(${target}
        PUBLIC ${ARG_LINKS}
        PRIVATE quillmark_common ${ARG_PRIVATE_LINKS})
endfunction()
