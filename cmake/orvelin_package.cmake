# The Debian package, made by `cpack` in a build folder; tools/make-packages does all of it.
set(ORVELIN_MAINTAINER "Orvelin authors <orvelin@example.org>" CACHE STRING
  "Name and address in the Debian package of whoever publishes it")
set(debian "${PROJECT_SOURCE_DIR}/packaging/debian")
orvelin_pack("${debian}/changelog" "${CMAKE_BINARY_DIR}/changelog.Debian.gz")
add_custom_target(debian_files DEPENDS "${CMAKE_BINARY_DIR}/changelog.Debian.gz")
add_dependencies(installed_files debian_files)

install(FILES "${debian}/copyright" "${CMAKE_BINARY_DIR}/changelog.Debian.gz"
  DESTINATION ${orvelin_doc_dir} COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES "${debian}/lintian-overrides" DESTINATION share/lintian/overrides RENAME orvelin
  COMPONENT debian EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvelin)
set(CPACK_PACKAGE_VENDOR "the Orvelin authors")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# For the script below too: the programs may be another processor's.
set(CPACK_ORVELIN_STRIP "${CMAKE_STRIP}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# Two components, put into one package.
foreach(component IN ITEMS Unspecified debian)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR}" orvelin ${component} /)
endforeach()
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/orvelin_package_files.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ORVELIN_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
  # dpkg would look for the libraries of this machine, or name packages of the cross compiler: these
  # are the first versions with all that the programs ask for.
  set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libgcc-s1 (>= 3.0), libstdc++6 (>= 12)")
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS python3)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "xboard, pychess, parallel, www-browser")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "classical UCI chess engine
Orvelin plays chess and Chess960 in any interface that speaks the Universal
Chess Interface (UCI) protocol, such as XBoard with polyglot or PyChess. It
ponders, reports several lines, answers from an opening book, and can weaken
itself to a chosen Elo. Its evaluation is a sum of readable terms. GUIs start
it as orvelin-play; orvelin is the exact engine, whose every answer is fixed.

With it come programs for opening books in the Polyglot format, for endgame
tables, for test suites and matches, one that draws the evaluation of a
position, and a board in the browser, to play, analyse and review games.")
include(CPack)
