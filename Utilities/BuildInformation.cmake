# Fills the include Version: what the version panel shows. Revisions and branches are fixed when CMake configures, which
# it does again after each commit. The time is that of the build: it is taken anew when a source of the plug-in, one of
# the above or SOURCE_DATE_EPOCH has changed, and stays when nothing has.
function(ask_git result fallback)
    execute_process(COMMAND git ${ARGN} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE status ERROR_QUIET)
    if(NOT status EQUAL 0 OR answer STREQUAL "")
        set(answer ${fallback})
    endif()
    set(${result} ${answer} PARENT_SCOPE)
endfunction()

ask_git(revision 0000000 rev-parse --short=7 HEAD)
string(SUBSTRING ${revision} 0 7 revision)
ask_git(branch none rev-parse --abbrev-ref HEAD)
foreach(sources MODEL GUI)
    set(VELM_${sources}_REVISION "" CACHE STRING "Seven hexadecimal digits for the panel; empty: git's")
    set(VELM_${sources}_BRANCH "" CACHE STRING "Branch name for the panel; empty: git's")
    foreach(what REVISION BRANCH)
        set(${sources}_${what} "${VELM_${sources}_${what}}")
    endforeach()
    if(NOT ${sources}_REVISION)
        set(${sources}_REVISION ${revision})
    endif()
    if(NOT ${sources}_BRANCH)
        set(${sources}_BRANCH ${branch})
    endif()
endforeach()
if(EXISTS ${CMAKE_SOURCE_DIR}/.git/logs/HEAD)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/.git/logs/HEAD)
endif()

string(TOLOWER ${CMAKE_SYSTEM_NAME} PLATFORM)
math(EXPR ARCHITECTURE "8 * ${CMAKE_SIZEOF_VOID_P}")
string(TOLOWER "${CMAKE_BUILD_TYPE}" BUILD_TYPE)
set(BUILD_TIME "@BUILD_TIME@") # for the build to fill
set(version ${CMAKE_BINARY_DIR}/generated/Utilities/Export/Version)
configure_file(Export/Version.in ${version}.in @ONLY)

# the file changes only when its content does; a change makes the time anew
file(CONFIGURE OUTPUT ${version}.epoch CONTENT "$ENV{SOURCE_DATE_EPOCH}\n")
get_target_property(plug_in_sources velm_export_objects SOURCES)
file(GLOB_RECURSE plug_in_headers CONFIGURE_DEPENDS *.hpp ../record_output/*.hpp ../host_link/*.h ../host_link/*.hpp
     ../compile_time/*.hpp)
add_custom_command(OUTPUT ${version}
    COMMAND ${CMAKE_COMMAND} -DFROM=${version}.in -DTO=${version} "-DCONFIGURED_EPOCH=$ENV{SOURCE_DATE_EPOCH}"
            -P ${CMAKE_CURRENT_SOURCE_DIR}/StampVersion.cmake
    DEPENDS ${version}.in ${version}.epoch ${plug_in_sources} ${plug_in_headers} StampVersion.cmake
    COMMENT "Stamping the plug-in's version panel" VERBATIM)
target_sources(velm_export_objects PRIVATE ${version})
add_custom_target(version_include DEPENDS ${version})
add_dependencies(velm_export_objects version_include) # as do others that compile the plug-in's sources
