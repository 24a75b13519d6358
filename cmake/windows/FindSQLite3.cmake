# SQLite in one source file, as the package below carries it. It is fetched once, into the build folder, and is used
# only when it is the one that this checksum names.
set(sqlite_package better-sqlite3)
set(sqlite_package_version 13.2.0)
set(SQLite3_VERSION 3.54.1)
set(checksum 67c43ff71fee3722b1035bf814da1dc88b51551c354de281ae68f7d89871851d1c78d70163ec0ca1bb7f06fecced3cf03c05e39d946d35a12c0139d465229665)

set(folder ${CMAKE_BINARY_DIR}/third_party)
set(archive ${folder}/${sqlite_package}-${sqlite_package_version}.tgz)
file(MAKE_DIRECTORY ${folder})
if(NOT EXISTS ${archive})
    message(STATUS "Fetching ${sqlite_package} ${sqlite_package_version}")
    execute_process(COMMAND npm pack --silent ${sqlite_package}@${sqlite_package_version}
                    WORKING_DIRECTORY ${folder} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endif()
file(SHA512 ${archive} found)
if(NOT found STREQUAL checksum)
    message(FATAL_ERROR "${archive} is not what it should be: its SHA-512 is\n ${found}\nnot\n ${checksum}\n"
                        "Remove it to fetch it again.")
endif()
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${folder} PATTERNS "package/deps/sqlite3/sqlite3.[ch]")

set(source ${folder}/package/deps/sqlite3)
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SQLite3 REQUIRED_VARS source VERSION_VAR SQLite3_VERSION)
if(NOT TARGET SQLite::SQLite3)
    add_library(sqlite3 STATIC ${source}/sqlite3.c)
    target_include_directories(sqlite3 SYSTEM PUBLIC ${source})
    target_compile_options(sqlite3 PRIVATE -w -O2) # its authors' own standards
    target_compile_definitions(sqlite3 PRIVATE SQLITE_THREADSAFE=2 SQLITE_OMIT_LOAD_EXTENSION
                                               SQLITE_ENABLE_MATH_FUNCTIONS)
    add_library(SQLite::SQLite3 ALIAS sqlite3)
endif()
