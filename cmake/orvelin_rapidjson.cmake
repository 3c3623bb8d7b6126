# RapidJSON is headers alone, which lie among those of the machine that builds. For another system
# those must not be seen: what is given is a folder with nothing else in it.
find_path(orvelin_rapidjson_parent rapidjson/document.h
  PATHS /usr/local/include /usr/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
set(orvelin_rapidjson "${CMAKE_BINARY_DIR}/rapidjson")
file(MAKE_DIRECTORY "${orvelin_rapidjson}")
file(CREATE_LINK "${orvelin_rapidjson_parent}/rapidjson" "${orvelin_rapidjson}/rapidjson" SYMBOLIC)

# orvelin_use_rapidjson(TARGET SOURCE...): for a target these of whose files read JSON.
function(orvelin_use_rapidjson target)
  target_include_directories(${target} SYSTEM PRIVATE "${orvelin_rapidjson}")
  if(ORVELIN_SANITIZE MATCHES "undefined")
    # It asks an empty stack for room by adding to its null pointer, before it takes any memory.
    set_source_files_properties(${ARGN} PROPERTIES
      COMPILE_OPTIONS -fno-sanitize=pointer-overflow)
  endif()
endfunction()
