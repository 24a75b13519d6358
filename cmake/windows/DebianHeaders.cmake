# debian_headers(TARGET FOLDER)
#
# Makes TARGET of a library that is headers only, from the machine's own /usr/include/FOLDER. They are copied out of
# there, for the other headers of that directory are not for Windows.
function(debian_headers target folder)
    file(COPY /usr/include/${folder} DESTINATION ${CMAKE_BINARY_DIR}/third_party/include)
    if(NOT TARGET ${target})
        add_library(${target} INTERFACE IMPORTED GLOBAL)
        target_include_directories(${target} INTERFACE ${CMAKE_BINARY_DIR}/third_party/include)
    endif()
endfunction()
