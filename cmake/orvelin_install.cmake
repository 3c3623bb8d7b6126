# What `cmake --install` puts where; the engine and the C++ tools are installed where they are
# built. Components: `licence` stays out of the Debian package, which states it in its own way;
# `portable` is the folder of the tarball, where the programs lie on top.
set(orvelin_programs orvelin orvelin-play)
set(orvelin_scripts "")
if(ORVELIN_BUILD_TOOLS)
  list(APPEND orvelin_programs orvelin-book orvelin-tables orvelin-perft orvelin-analyse)
  set(orvelin_scripts orvelin-suite orvelin-explain orvelin-match)
endif()
set(orvelin_libraries suite_lib explain_lib match_lib orvelin_lib)
set(ORVELIN_BOARD "" CACHE PATH
  "Folder of the board in the browser, by tools/make-board; it is installed where there is one")
if(ORVELIN_BUILD_TOOLS AND ORVELIN_BOARD)
  list(APPEND orvelin_scripts orvelin-board)
  list(APPEND orvelin_libraries board_lib)
endif()
set(orvelin_data_dir share/orvelin)
set(orvelin_doc_dir share/doc/orvelin)

# orvelin_pack(SOURCE RESULT): packs a text in the same bytes every time.
function(orvelin_pack source result)
  add_custom_command(OUTPUT "${result}"
    COMMAND gzip -9nc "${source}" > "${result}" DEPENDS "${source}" VERBATIM)
endfunction()

# The manual pages, one for each program.
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/man")
foreach(program IN LISTS orvelin_programs orvelin_scripts)
  set(manual "${PROJECT_SOURCE_DIR}/packaging/man/${program}.6")
  orvelin_pack("${manual}" "${CMAKE_BINARY_DIR}/man/${program}.6.gz")
  list(APPEND orvelin_manuals "${manual}")
  list(APPEND orvelin_packed_manuals "${CMAKE_BINARY_DIR}/man/${program}.6.gz")
endforeach()
add_custom_target(manuals ALL DEPENDS ${orvelin_packed_manuals})
install(FILES ${orvelin_packed_manuals} DESTINATION share/man/man6)

# The documents for users, with a README of their own; those for developers stay with the sources.
# They keep their places to each other, so that the links between them hold.
set(orvelin_documents "${PROJECT_SOURCE_DIR}/packaging/README.md" "${PROJECT_SOURCE_DIR}/NEWS.md")
set(orvelin_pages analyse board board-core clocks evaluation explain interfaces match packaging play robustness scale strength suite tools uci)
list(TRANSFORM orvelin_pages REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/docs/\\1.md")
install(FILES ${orvelin_documents} DESTINATION ${orvelin_doc_dir})
install(FILES ${orvelin_pages} DESTINATION ${orvelin_doc_dir}/docs)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/images" DESTINATION ${orvelin_doc_dir}/docs)
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION ${orvelin_doc_dir} COMPONENT licence)
install(FILES "${PROJECT_SOURCE_DIR}/packaging/orvelin-play.eng"
  "${PROJECT_SOURCE_DIR}/packaging/orvelin.eng" DESTINATION share/games/plugins/uci)

# All that an install needs, without the tests and the generators of tables.
add_custom_target(installed_files DEPENDS ${orvelin_programs} manuals)
if(NOT ORVELIN_BUILD_TOOLS)
  return()
endif()

# The opening book, from the lines of moves in `openings`.
set(orvelin_book "${CMAKE_BINARY_DIR}/Orvelin.bin")
file(GLOB orvelin_openings CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/openings/*.txt")
if(orvelin_openings)
  add_custom_command(OUTPUT "${orvelin_book}"
    COMMAND awk 1 ${orvelin_openings} |
      ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:orvelin-book> make - -o "${orvelin_book}"
    DEPENDS orvelin-book ${orvelin_openings}
    COMMENT "Building the opening book" VERBATIM)
  add_custom_target(opening_book ALL DEPENDS "${orvelin_book}")
else()
  add_custom_target(opening_book
    COMMAND "${CMAKE_COMMAND}" -E echo "There is no openings/*.txt to build the opening book from."
    COMMAND "${CMAKE_COMMAND}" -E false VERBATIM)
endif()
add_dependencies(installed_files opening_book)

# install_link(NAME TARGET FOLDER [ARGUMENT...]): a relative link, so that the tree can be moved.
function(install_link name target folder)
  string(MAKE_C_IDENTIFIER "links to ${target}" place)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/${place}")
  file(CREATE_LINK "${target}" "${CMAKE_BINARY_DIR}/${place}/${name}" SYMBOLIC)
  install(FILES "${CMAKE_BINARY_DIR}/${place}/${name}" DESTINATION "${folder}" ${ARGN})
endfunction()

# install_data(GAMES [ARGUMENT...]): what goes with the programs, which lie in the folder GAMES. A
# Python tool looks for its library, and for the engine, in the folder where it really is: so it
# lies with the library, a link to it among the programs, and links to the engine and to
# orvelin-analyse beside it.
function(install_data games)
  foreach(program orvelin orvelin-analyse)
    file(RELATIVE_PATH to_games "/${orvelin_data_dir}" "/${games}/${program}")
    install_link(${program} "${to_games}" ${orvelin_data_dir} ${ARGN})
  endforeach()
  foreach(script IN LISTS orvelin_scripts)
    file(RELATIVE_PATH to_script "/${games}" "/${orvelin_data_dir}/${script}")
    install(PROGRAMS "${PROJECT_SOURCE_DIR}/tools/${script}"
      DESTINATION ${orvelin_data_dir} ${ARGN})
    install_link(${script} "${to_script}" "${games}" ${ARGN})
  endforeach()
  foreach(library IN LISTS orvelin_libraries)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/tools/${library}" DESTINATION ${orvelin_data_dir}
      ${ARGN} PATTERN __pycache__ EXCLUDE
      # What makes the page stays with the sources.
      REGEX "/board_lib/(assemble|opening_names)[.]py$" EXCLUDE)
  endforeach()
  if(ORVELIN_BOARD)
    install(DIRECTORY "${ORVELIN_BOARD}/" DESTINATION ${orvelin_data_dir}/board ${ARGN})
  endif()
  file(GLOB suites CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/suites/*.epd")
  install(FILES ${suites} DESTINATION ${orvelin_data_dir}/suites ${ARGN})
  install(FILES ${orvelin_openings} DESTINATION ${orvelin_data_dir}/openings ${ARGN})
  install(PROGRAMS "${PROJECT_SOURCE_DIR}/tools/scale/analyse.slurm"
    "${PROJECT_SOURCE_DIR}/tools/scale/analyse-parallel"
    DESTINATION ${orvelin_data_dir}/scale ${ARGN})
endfunction()

install(FILES "${orvelin_book}" DESTINATION games/orvelin.files)
install_data(games)

set(portable COMPONENT portable EXCLUDE_FROM_ALL)
install(TARGETS ${orvelin_programs} RUNTIME DESTINATION . ${portable})
install_data(. ${portable})
install(FILES "${orvelin_book}" ${orvelin_documents} "${PROJECT_SOURCE_DIR}/LICENSE"
  "${PROJECT_SOURCE_DIR}/packaging/START.txt" "${PROJECT_SOURCE_DIR}/packaging/debian/copyright"
  DESTINATION . ${portable})
install(FILES ${orvelin_manuals} DESTINATION man ${portable})
install(FILES ${orvelin_pages} DESTINATION docs ${portable})
install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/images" DESTINATION docs ${portable})
