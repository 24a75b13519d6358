include(${CMAKE_CURRENT_LIST_DIR}/DebianHeaders.cmake)
debian_headers(RapidJSON::RapidJSON rapidjson)
set(RAPIDJSON_INCLUDE_DIRS ${CMAKE_BINARY_DIR}/third_party/include)
set(RapidJSON_FOUND TRUE)
