# What CPack runs on the files of a package before it packs them. Every file gets the time that SOURCE_DATE_EPOCH says,
# so that two builds of one commit give the same bytes; a .deb gets its changelog, which Debian wants compressed.
set(time $ENV{SOURCE_DATE_EPOCH})
if(NOT time)
    string(TIMESTAMP time %s UTC)
endif()
if(CPACK_GENERATOR STREQUAL DEB)
    execute_process(COMMAND date -u -R -d @${time} OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
                    COMMAND_ERROR_IS_FATAL ANY)
    set(changelog ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${CPACK_PACKAGING_INSTALL_PREFIX}/${CPACK_VELM_DOCUMENTS}/changelog)
    file(READ ${CPACK_VELM_CHANGELOG} text)
    string(REPLACE DATE "${date}" text "${text}")
    file(WRITE ${changelog} "${text}")
    execute_process(COMMAND gzip -9n ${changelog} COMMAND_ERROR_IS_FATAL ANY)
endif()
execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @${time} {} + COMMAND_ERROR_IS_FATAL ANY)
