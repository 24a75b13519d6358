# Headers only: taken out of the machine's own include directory, whose other headers are not for this target.
set(CLI11_INCLUDE_DIR ${CMAKE_BINARY_DIR}/third_party/include)
file(COPY /usr/include/CLI DESTINATION ${CLI11_INCLUDE_DIR})

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CLI11 DEFAULT_MSG CLI11_INCLUDE_DIR)
if(NOT TARGET CLI11::CLI11)
    add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
    target_include_directories(CLI11::CLI11 INTERFACE ${CLI11_INCLUDE_DIR})
endif()
