# Toolchain file: Windows x64 with mingw-w64. What is built needs no library but the system's own, and is the same
# to the last byte wherever and whenever it is built. Programs run under Wine, in a prefix of this build's own.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/windows/wine ${CMAKE_BINARY_DIR}/wine)

foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")
endforeach()

# libraries and headers come from the cross compiler or are made by the Find files beside this one, never from the
# machine that builds
set(CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/windows)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(what LIBRARY INCLUDE PACKAGE)
    set(CMAKE_FIND_ROOT_PATH_MODE_${what} ONLY)
endforeach()
