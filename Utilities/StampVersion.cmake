# cmake -DFROM=... -DTO=... -DCONFIGURED_EPOCH=... -P StampVersion.cmake: the include Version with the time of this build,
# or that of SOURCE_DATE_EPOCH where it is set now or was when CMake configured.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH} AND NOT CONFIGURED_EPOCH STREQUAL "")
    set(ENV{SOURCE_DATE_EPOCH} ${CONFIGURED_EPOCH})
endif()
string(TIMESTAMP BUILD_TIME "%a, %d %b %Y %H:%M:%S +0000" UTC)
string(REPLACE ", 0" ", " BUILD_TIME "${BUILD_TIME}") # the day of the month without a leading zero
configure_file(${FROM} ${TO} @ONLY)
