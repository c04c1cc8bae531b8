# Read by CPack for each format. Debian's systems have the texts of the licenses already.
if(CPACK_GENERATOR STREQUAL "DEB")
    list(REMOVE_ITEM CPACK_COMPONENTS_ALL licenses)
endif()
