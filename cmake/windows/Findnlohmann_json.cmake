include(${CMAKE_CURRENT_LIST_DIR}/DebianHeaders.cmake)
debian_headers(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND TRUE)
