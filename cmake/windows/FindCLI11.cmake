include(${CMAKE_CURRENT_LIST_DIR}/DebianHeaders.cmake)
debian_headers(CLI11::CLI11 CLI)
set(CLI11_FOUND TRUE)
