set(orvelin_tools "${CMAKE_CURRENT_LIST_DIR}")

# Programs for users. Each is a folder: main.cpp becomes the program, all else a library that the
# tests can link too.
if(ORVELIN_SANITIZE)
  set(orvelin_command_line_options -O0)
elseif(ORVELIN_QUICK_TOOLS AND NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(orvelin_command_line_options -O1)
endif()

file(GLOB orvelin_tool_support_sources CONFIGURE_DEPENDS "${orvelin_tools}/support/*.cpp")
add_library(orvelin_tool_support STATIC ${orvelin_tool_support_sources})
target_include_directories(orvelin_tool_support PUBLIC "${orvelin_tools}")
target_link_libraries(orvelin_tool_support PUBLIC orvelin_core CLI11::CLI11)
set_source_files_properties("${orvelin_tools}/support/tool_main.cpp" PROPERTIES
  COMPILE_OPTIONS "${orvelin_command_line_options}")

# For checks the tools are built quickly. CLI11 takes long enough to compile as it is: the files that
# read a command line, which belong to the program alone, are hardly optimised then, and under the
# sanitizers not at all.
function(orvelin_add_tool name)
  file(GLOB sources CONFIGURE_DEPENDS "${orvelin_tools}/${name}/*.cpp")
  list(REMOVE_ITEM sources ${orvelin_replaced_sources})
  set(main "${orvelin_tools}/${name}/main.cpp")
  if(NOT main IN_LIST sources)
    return()
  endif()
  file(GLOB command_lines CONFIGURE_DEPENDS "${orvelin_tools}/${name}/*_command.cpp")
  list(REMOVE_ITEM sources "${main}" ${command_lines})
  add_executable(orvelin-${name} "${main}" ${command_lines})
  target_link_libraries(orvelin-${name} PRIVATE orvelin_tool_support)
  orvelin_put_together(orvelin-${name} 1)
  if(sources)
    add_library(orvelin_${name}_tool STATIC ${sources})
    target_link_libraries(orvelin_${name}_tool PUBLIC orvelin_tool_support)
    orvelin_put_together(orvelin_${name}_tool 2)
    target_link_libraries(orvelin-${name} PRIVATE orvelin_${name}_tool)
  endif()
  if(orvelin_command_line_options)
    target_compile_options(orvelin-${name} PRIVATE ${orvelin_command_line_options})
    orvelin_link_core_first(orvelin-${name})
  endif()
  if(ORVELIN_QUICK_TOOLS)
    orvelin_link_plainly(orvelin-${name})
  endif()
  set_target_properties(orvelin-${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
  install(TARGETS orvelin-${name} RUNTIME DESTINATION games)
endfunction()
