# Tests that are written in Python: of tools, texts and scripts.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

# orvelin_add_python_test(NAME FILE [CLASS...] [COST COST] [ENVIRONMENT VARIABLE=VALUE...])
#
# NAME is FOLDER.TEST. Those that take long have a COST and start first. Besides what stands here a
# test finds in its environment what it is given.
function(orvelin_add_python_test name)
  cmake_parse_arguments(PARSE_ARGV 1 test "" "COST" "ENVIRONMENT")
  add_test(NAME "${name}"
    COMMAND "${PROJECT_SOURCE_DIR}/tests/support/without_installed_book"
      "$<TARGET_FILE:Python3::Interpreter>" -B ${test_UNPARSED_ARGUMENTS}
    WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  set(path "${PROJECT_SOURCE_DIR}/tools:${PROJECT_SOURCE_DIR}/tests/support")
  set_tests_properties("${name}" PROPERTIES
    TIMEOUT 300
    ENVIRONMENT "PYTHONPATH=${path};${test_ENVIRONMENT}")
  if(test_COST)
    set_tests_properties("${name}" PROPERTIES COST ${test_COST})
  endif()
endfunction()
