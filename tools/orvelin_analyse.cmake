# The program orvelin-analyse.
# The records of an analysis are read by RapidJSON, which is headers alone, and kept by SQLite.
if(ORVELIN_STATIC)
  set(CMAKE_FIND_LIBRARY_SUFFIXES ".a")
endif()
if(CMAKE_CROSSCOMPILING)
  # Debian has the library for its own processor: elsewhere an output of its files says so.
  find_package(SQLite3)
else()
  find_package(SQLite3 REQUIRED)
endif()
include("${CMAKE_CURRENT_LIST_DIR}/../cmake/orvelin_rapidjson.cmake")
if(NOT SQLite3_FOUND)
  set(orvelin_replaced_sources "${orvelin_tools}/analyse/sqlite_database.cpp")
endif()
orvelin_add_tool(analyse)
orvelin_use_rapidjson(orvelin_analyse_tool
  "${orvelin_tools}/analyse/record_reader.cpp" "${orvelin_tools}/analyse/verification.cpp")
target_link_libraries(orvelin_analyse_tool PUBLIC orvelin_analysis orvelin_play)
if(SQLite3_FOUND)
  target_link_libraries(orvelin_analyse_tool PUBLIC SQLite::SQLite3)
else()
  target_sources(orvelin_analyse_tool PRIVATE "${orvelin_tools}/analyse/without_sqlite/sqlite_database.cpp")
endif()
