# orvelin_put_together(TARGET GROUPS): with ORVELIN_UNITY the sources of a target are compiled as so
# many files. To read the same headers over and over, and to make the same code of their templates,
# takes longer than all else. Where a source goes hangs on its name alone: a new one moves no other,
# and it is the new one that has to change where two keep one name for themselves. Builds without
# this show what a file does not include itself.
function(orvelin_put_together target groups)
  if(NOT ORVELIN_UNITY)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_filename_component(name "${source}" NAME)
    string(MD5 digest "${name}")
    string(SUBSTRING "${digest}" 0 6 digits)
    math(EXPR group "0x${digits} % ${groups}")
    set_property(SOURCE "${source}" PROPERTY UNITY_GROUP "group_${group}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  # Of a fixture that a file keeps for itself g++ warns once it is not in the main file.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()
