# What software centres show: writes METAINFO from the template beside this file.
#
# Included by CMakeLists.txt, and run as a script by the tests:
#   cmake -DMETAINFO=... -DPROJECT_VERSION=... -DQUILLMARK_WEB_FOLDER=... -P Metainfo.cmake

# They get pictures and pages from the web, so these are told only where there is such a place.
set(QUILLMARK_WEB_ELEMENTS "")
if(QUILLMARK_WEB_FOLDER)
    set(QUILLMARK_WEB_ELEMENTS "  <url type=\"homepage\">${QUILLMARK_WEB_FOLDER}</url>
  <screenshots>
    <screenshot type=\"default\">
      <caption>The fonts of a folder with their verdicts, and the reasons for one</caption>
      <image type=\"source\">${QUILLMARK_WEB_FOLDER}/pictures/window.png</image>
    </screenshot>
    <screenshot>
      <caption>The fonts of a PDF, with the pages that use them</caption>
      <image type=\"source\">${QUILLMARK_WEB_FOLDER}/pictures/document-dark.png</image>
    </screenshot>
  </screenshots>
")
endif()

# Dated by SOURCE_DATE_EPOCH, or else by the day of the build.
string(TIMESTAMP QUILLMARK_RELEASE_DATE "%Y-%m-%d" UTC)
set(QUILLMARK_RELEASE_TYPE stable)
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/../../CHANGELOG.md unreleased REGEX "^## Not released yet$")
if(unreleased)
    set(QUILLMARK_RELEASE_TYPE development)
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/org.quillmark.Quillmark.metainfo.xml.in ${METAINFO} @ONLY)
