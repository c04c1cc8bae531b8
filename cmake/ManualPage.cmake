# quillmark_manual(<program> <component>)
#
# The manual page docs/man/<program>.1.scd, made and installed where the packager has scdoc.
# It is compressed as Debian wants it: the best that gzip can, and without a time in it.
find_program(SCDOC scdoc)
find_program(GZIP gzip REQUIRED)
if(NOT SCDOC)
    message(STATUS "There is no scdoc: the manual pages are left out")
endif()

function(quillmark_manual program component)
    if(NOT SCDOC)
        return()
    endif()
    set(source ${PROJECT_SOURCE_DIR}/docs/man/${program}.1.scd)
    set(manual ${CMAKE_CURRENT_BINARY_DIR}/${program}.1)
    add_custom_command(
        OUTPUT ${manual}.gz
        COMMAND ${SCDOC} < ${source} > ${manual}
        COMMAND ${GZIP} -9nf ${manual}
        DEPENDS ${source}
        VERBATIM
    )
    add_custom_target(manual-${program} ALL DEPENDS ${manual}.gz)
    install(FILES ${manual}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
endfunction()
