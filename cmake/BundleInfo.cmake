# What a build says about itself where updates are concerned; docs/updates.md.

set(QUILLMARK_DISPLAY_NAME "Quillmark" CACHE STRING "What texts about updates call the program")
set(QUILLMARK_NAME "Quillmark" CACHE STRING "What they call it without a display name")
set(QUILLMARK_SHORT_VERSION "" CACHE STRING "The version that is shown; the project's when empty")
set(QUILLMARK_BUILD_VERSION "" CACHE STRING "The version that is compared; the project's when empty")
set(QUILLMARK_FEED_URL "" CACHE STRING
    "Where the list of updates is; empty when updates come in packages: then nothing is asked for")
set(QUILLMARK_FEED_PUBLIC_KEY "" CACHE STRING
    "The Ed25519 key, in Base64, that has to have signed the list; empty when it is not signed")

# quillmark_bundle_info(<program> [FEED_URL <url>] [PUBLIC_KEY <key>])
#
# Gives a program its builtBundleInfo(). A program for tests may have a feed of its own.
function(quillmark_bundle_info program)
    cmake_parse_arguments(ARG "" "FEED_URL;PUBLIC_KEY" "" ${ARGN})
    if(NOT "${ARG_FEED_URL}" STREQUAL "" AND NOT "${ARG_FEED_URL}" MATCHES "^https://[^/]"
        AND NOT "${ARG_FEED_URL}" MATCHES "^http://(127\\.[0-9.]+|localhost|\\[::1\\])[:/]")
        message(FATAL_ERROR "The feed \"${ARG_FEED_URL}\" is not on https, nor on this computer.")
    endif()
    string(LENGTH "${ARG_PUBLIC_KEY}" length)
    if(NOT length EQUAL 0 AND NOT (length EQUAL 44 AND ARG_PUBLIC_KEY MATCHES "^[A-Za-z0-9+/]+=$"))
        message(FATAL_ERROR "\"${ARG_PUBLIC_KEY}\" is not a key of 32 bytes in Base64.")
    endif()

    set(shortVersion "${QUILLMARK_SHORT_VERSION}")
    set(version "${QUILLMARK_BUILD_VERSION}")
    foreach(field shortVersion version)
        if("${${field}}" STREQUAL "")
            set(${field} "${PROJECT_VERSION}")
        endif()
    endforeach()
    set(displayName "${QUILLMARK_DISPLAY_NAME}")
    set(name "${QUILLMARK_NAME}")
    set(feedURL "${ARG_FEED_URL}")
    set(publicKey "${ARG_PUBLIC_KEY}")
    foreach(field displayName name shortVersion version feedURL publicKey)
        if("${${field}}" STREQUAL "")
            set(${field} "std::nullopt")
        else()
            set(${field} "R\"setting(${${field}})setting\"")
        endif()
    endforeach()
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${program}-bundle/BuiltBundleInfo.cpp)
    configure_file(${PROJECT_SOURCE_DIR}/app/update/BuiltBundleInfo.cpp.in ${source} @ONLY)
    target_sources(${program} PRIVATE ${source})
    target_link_libraries(${program} PRIVATE quillmark_update)
endfunction()
