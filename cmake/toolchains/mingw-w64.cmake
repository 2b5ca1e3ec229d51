# Windows x86-64 with MinGW-w64 (posix threads), from Debian's packages; the tests run under Wine.
# The libraries for the target: VELL_QT_WINDOWS and VELL_CURL_WINDOWS in the environment or as CMake variables, the folders
# that scripts/build-qt-windows and scripts/build-curl-windows print.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
# The variant with std::thread and std::mutex, the one that Qt was built with.
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

foreach(library IN ITEMS "QT:lib/cmake/Qt5/Qt5Config.cmake" "CURL:lib/cmake/CURL/CURLConfig.cmake")
    string(REPLACE ":" ";" library "${library}")
    list(POP_FRONT library name file)
    set(variable VELL_${name}_WINDOWS)
    if(NOT ${variable})
        set(${variable} "$ENV{${variable}}")
    endif()
    if(NOT EXISTS "${${variable}}/${file}")
        message(FATAL_ERROR "${variable} (\"${${variable}}\") is not the folder of such a library for Windows. "
            "scripts/test --preset windows finds or builds it.")
    endif()
endforeach()
# The projects of try_compile() read this file again, without the environment of the first time.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELL_QT_WINDOWS VELL_CURL_WINDOWS)

# Headers, libraries and packages come from the target only, programs from the host only.
list(PREPEND CMAKE_PREFIX_PATH "${VELL_QT_WINDOWS}" "${VELL_CURL_WINDOWS}")
set(CMAKE_FIND_ROOT_PATH "/usr/${triple}" ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# lrelease and lupdate run while building: those of the host's Qt.
file(GLOB linguist "/usr/lib/*/cmake/Qt5LinguistTools")
if(linguist)
    list(GET linguist 0 Qt5LinguistTools_DIR)
endif()

set(CMAKE_CROSSCOMPILING_EMULATOR
    "${CMAKE_CURRENT_LIST_DIR}/wine-run.sh" --dlls "${VELL_QT_WINDOWS}/bin" --dlls "${VELL_CURL_WINDOWS}/bin")
