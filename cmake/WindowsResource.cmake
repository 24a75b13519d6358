# windows_resource(TARGET DESCRIPTION)
#
# Gives a Windows binary what its properties show: product, version and description. On other systems nothing.
# A program also gets the manifest: UTF-8 as its code page, and paths of any length.
if(WIN32)
    enable_language(RC)
endif()

function(windows_resource target DESCRIPTION)
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    set(FILE_TYPE VFT_DLL)
    set(FILE_NAME ${target}.dll)
    set(MANIFEST "")
    if(type STREQUAL EXECUTABLE)
        set(FILE_TYPE VFT_APP)
        set(FILE_NAME ${target}.exe)
        set(MANIFEST
            "CREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"${PROJECT_SOURCE_DIR}/packaging/windows/velm.manifest\"")
    endif()
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/resource.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
endfunction()
