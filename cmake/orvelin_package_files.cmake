# Run by cpack between the install and the package: what only the Debian package asks for.
file(GLOB scripts "${CPACK_TEMPORARY_DIRECTORY}/usr/share/orvelin/orvelin-*")
foreach(script IN LISTS scripts)
  # Debian's programs use Debian's interpreter. In place, so that the permissions stay; a link to a
  # program would become a copy of it.
  if(NOT IS_SYMLINK "${script}")
    execute_process(COMMAND sed -i "1s|^#!/usr/bin/env python3$|#!/usr/bin/python3|" "${script}"
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()

# What the compiler notes of itself is of no use to a program. The rest is stripped already.
file(GLOB programs "${CPACK_TEMPORARY_DIRECTORY}/usr/games/orvelin*")
foreach(program IN LISTS programs)
  if(NOT IS_DIRECTORY "${program}" AND NOT IS_SYMLINK "${program}")
    execute_process(COMMAND "${CPACK_ORVELIN_STRIP}" --remove-section=.comment "${program}"
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()

# The same sources give the same package: no file may carry the time of the build.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND find "${CPACK_TEMPORARY_DIRECTORY}" -exec touch -h -d "@$ENV{SOURCE_DATE_EPOCH}" {} +
    COMMAND_ERROR_IS_FATAL ANY)
endif()
