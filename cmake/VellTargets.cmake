include_guard(GLOBAL)
include(GenerateExportHeader)

find_program(VELL_CCACHE ccache)
if(VELL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VELL_CCACHE}")
    if(VELL_PRECOMPILED_HEADERS)
        list(PREPEND CMAKE_CXX_COMPILER_LAUNCHER
            "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros)
    endif()
endif()

# One folder for all programs and DLLs, so that Windows finds the libraries beside the programs.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
if(MINGW)
    set(CMAKE_SHARED_LIBRARY_PREFIX "") # VellDocumentData.dll, as everybody there expects it
endif()

# An installed tree finds its own libraries wherever it is moved.
if(NOT WIN32)
    file(RELATIVE_PATH VELL_LIBRARIES_FROM_PROGRAMS
        "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/${VELL_LIBRARIES_FROM_PROGRAMS}")
endif()

# The interface of a library is compared by what its debug information tells of it (scripts/abi).
set(VELL_INTERFACE_DEBUG_INFORMATION $<$<CONFIG:RelWithDebInfo>:-g2>)

# Programs that were linked with another interface do not start with this one. Until 1.0 a minor version may change it.
if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(VELL_SOVERSION "0.${PROJECT_VERSION_MINOR}")
else()
    set(VELL_SOVERSION "${PROJECT_VERSION_MAJOR}")
endif()

# vell_refuse_unknown_arguments(<function> <argument>...)
# Ends the configuration if there are any: a misspelled keyword would leave out what follows it.
function(vell_refuse_unknown_arguments caller)
    if(ARGN)
        message(FATAL_ERROR "${caller} does not know: ${ARGN}")
    endif()
endfunction()

# vell_set_common_options(<target>)
# The settings of every target of this project. Warnings are errors only if a preset sets CMAKE_COMPILE_WARNING_AS_ERROR,
# so that a packager with another compiler is never stopped. In folders that set VELL_ALLOW_ASCII_CASTS a literal
# converts to QString.
function(vell_set_common_options target)
    vell_refuse_unknown_arguments(vell_set_common_options ${ARGN})
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        CXX_EXTENSIONS OFF
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wundef)
    target_compile_definitions(${target} PRIVATE
        $<$<NOT:$<BOOL:${VELL_ALLOW_ASCII_CASTS}>>:QT_NO_CAST_FROM_ASCII>
        QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
        QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS
        QT_DISABLE_DEPRECATED_BEFORE=0x050f00)
    get_target_property(type ${target} TYPE)
    if(TARGET vell_library_headers AND NOT VELL_ALLOW_ASCII_CASTS AND NOT type STREQUAL "EXECUTABLE" AND NOT target STREQUAL "vell_library_headers")
        target_precompile_headers(${target} REUSE_FROM vell_library_headers)
    endif()
endfunction()

# Reading Qt's headers takes most of the time of a build. With VELL_PRECOMPILED_HEADERS the compiler reads them once for all
# libraries and once for all tests, whose options differ. Presets without it show a source that lacks an include.
function(vell_add_precompiled_headers)
    set(headers
        <QByteArray> <QDateTime> <QDir> <QElapsedTimer> <QFile> <QFileInfo> <QHash> <QJsonArray> <QJsonDocument>
        <QJsonObject> <QList> <QMap> <QNetworkReply> <QNetworkRequest> <QObject> <QPointer> <QSet> <QString> <QThread>
        <QTimer> <QUrl> <QUrlQuery> <QVariant> <QVector>
        <algorithm> <atomic> <functional> <map> <memory> <mutex> <optional> <string> <vector>)
    set(source "${PROJECT_BINARY_DIR}/precompiled_headers.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "int main() {}\n")
    set(VELL_ALLOW_ASCII_CASTS ON)
    add_executable(vell_test_headers EXCLUDE_FROM_ALL "${source}")
    vell_set_common_options(vell_test_headers)
    vell_set_test_options(vell_test_headers)
    set(VELL_ALLOW_ASCII_CASTS OFF)
    add_library(vell_library_headers OBJECT EXCLUDE_FROM_ALL "${source}")
    vell_set_common_options(vell_library_headers)
    foreach(target IN ITEMS vell_test_headers vell_library_headers)
        set_target_properties(${target} PROPERTIES AUTOMOC OFF)
        # Without the definitions of Qt5::Network, which not every target has.
        target_link_libraries(${target} PRIVATE Qt5::Core)
        target_include_directories(${target} SYSTEM PRIVATE ${Qt5Network_INCLUDE_DIRS})
        target_precompile_headers(${target} PRIVATE ${headers})
    endforeach()
endfunction()

# Tests are compiled more often than they are run: what they test is optimised.
function(vell_set_test_options target)
    target_compile_options(${target} PRIVATE -O0)
endfunction()

# vell_add_version_resource(<target>)
# What the properties of the file show on Windows.
function(vell_add_version_resource target)
    vell_refuse_unknown_arguments(vell_add_version_resource ${ARGN})
    if(NOT WIN32)
        return()
    endif()
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        set(fileType VFT_APP)
        set(fileName "${target}.exe")
    else()
        set(fileType VFT_DLL)
        set(fileName "${target}.dll")
    endif()
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${resource}" @ONLY)
    target_sources(${target} PRIVATE "${resource}")
endfunction()

# vell_install_headers(<destination> <header>...)
# Keeps the folder of each header below <destination>, so that include lines are the same in the
# tree and once installed.
function(vell_install_headers destination)
    foreach(header IN LISTS ARGN)
        get_filename_component(folder "${header}" DIRECTORY)
        install(FILES "${header}" DESTINATION "${destination}/${folder}" COMPONENT Development)
    endforeach()
endfunction()

# vell_add_platform_library(<name> EXPORT_NAME <name> SOURCES ... PUBLIC_HEADERS ... LINK ...)
# One of the imported libraries, as a shared library of its own that knows nothing of the rest.
function(vell_add_platform_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORT_NAME" "SOURCES;PUBLIC_HEADERS;LINK;LINK_PRIVATE")
    vell_refuse_unknown_arguments(vell_add_platform_library ${arg_UNPARSED_ARGUMENTS})
    add_library(${name} SHARED ${arg_SOURCES} ${arg_PUBLIC_HEADERS})
    add_library(Vell::${arg_EXPORT_NAME} ALIAS ${name})
    vell_set_common_options(${name})
    target_compile_options(${name} PRIVATE ${VELL_INTERFACE_DEBUG_INFORMATION})
    vell_add_version_resource(${name})
    string(TOLOWER ${name} lower)
    set(exportHeader "${PROJECT_BINARY_DIR}/platform/${name}/${lower}_export.h")
    generate_export_header(${name} EXPORT_FILE_NAME "${exportHeader}")
    set_target_properties(${name} PROPERTIES
        EXPORT_NAME ${arg_EXPORT_NAME}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${VELL_SOVERSION})
    target_include_directories(${name} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/platform>"
        "$<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/platform>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/VellPlatform>")
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_LINK_PRIVATE})
    vell_install_headers("${CMAKE_INSTALL_INCLUDEDIR}/VellPlatform/${name}" ${arg_PUBLIC_HEADERS})
    install(FILES "${exportHeader}"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/VellPlatform/${name}" COMPONENT Development)
    install(TARGETS ${name} EXPORT VellDocumentDataTargets)
    list(TRANSFORM arg_PUBLIC_HEADERS PREPEND "${name}/")
    set_property(GLOBAL APPEND PROPERTY VELL_PUBLIC_HEADERS ${arg_PUBLIC_HEADERS})
endfunction()

# vell_add_module(<name> [LIBRARY <name>] SOURCES ... PUBLIC_HEADERS ... LINK ...)
# One source folder of a library (VellDocumentData unless LIBRARY says another), as an OBJECT library of its own: the
# folder can use only what it links, so the build checks the direction of the dependencies, and the tests can link the
# hidden internals. The CMakeLists.txt of the folder above collects the objects in the shared library.
function(vell_add_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "LIBRARY" "SOURCES;PUBLIC_HEADERS;LINK")
    vell_refuse_unknown_arguments(vell_add_module ${arg_UNPARSED_ARGUMENTS})
    if(NOT arg_LIBRARY)
        set(arg_LIBRARY VellDocumentData)
    endif()
    add_library(${name} OBJECT ${arg_SOURCES} ${arg_PUBLIC_HEADERS})
    vell_set_common_options(${name})
    target_compile_options(${name} PRIVATE ${VELL_INTERFACE_DEBUG_INFORMATION})
    # Also for the tests that link the objects themselves.
    target_compile_definitions(${name} PUBLIC ${arg_LIBRARY}_EXPORTS)
    get_filename_component(root "${CMAKE_CURRENT_SOURCE_DIR}" DIRECTORY)
    get_filename_component(binaryRoot "${CMAKE_CURRENT_BINARY_DIR}" DIRECTORY)
    target_include_directories(${name} PUBLIC "${root}" "${binaryRoot}")
    target_link_libraries(${name} PUBLIC ${arg_LINK})

    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    vell_install_headers("${CMAKE_INSTALL_INCLUDEDIR}/${arg_LIBRARY}/${folder}" ${arg_PUBLIC_HEADERS})
    list(TRANSFORM arg_PUBLIC_HEADERS PREPEND "${folder}/")
    set_property(GLOBAL APPEND PROPERTY VELL_PUBLIC_HEADERS ${arg_PUBLIC_HEADERS})
endfunction()

# vell_add_test(tst_<subject> [SERVICE] [POSTGRES] [SOURCES ...] [LINK ...] [LABELS ...])
# The program of tst_<subject>.cpp in this folder, as the test <folder>/tst_<subject>. SERVICE: it runs reference
# services. POSTGRES: it also runs as postgresql/tst_<subject>, with the records of the services in PostgreSQL.
function(vell_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SERVICE;POSTGRES" "" "SOURCES;LINK;LABELS")
    vell_refuse_unknown_arguments(vell_add_test ${arg_UNPARSED_ARGUMENTS})
    get_filename_component(folder "${CMAKE_CURRENT_SOURCE_DIR}" NAME)
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    vell_set_common_options(${name})
    vell_set_test_options(${name})
    if(TARGET vell_test_headers)
        target_precompile_headers(${name} REUSE_FROM vell_test_headers)
    endif()
    if(VELL_FAST_LINKER)
        target_link_options(${name} PRIVATE -fuse-ld=gold)
    endif()
    target_link_libraries(${name} PRIVATE vell_test_support ${arg_LINK} Qt5::Test)
    if(arg_SERVICE)
        target_link_libraries(${name} PRIVATE vell_test_service)
        if(CMAKE_CROSSCOMPILING)
            set_property(TARGET ${name} APPEND PROPERTY CROSSCOMPILING_EMULATOR
                --through "${VELL_NATIVE_BUILD}/bin/service_host")
        endif()
    endif()
    add_test(NAME ${folder}/${name} COMMAND ${name})
    set_tests_properties(${folder}/${name} PROPERTIES
        TIMEOUT 300 # far above what any takes, so that a busy machine fails none
        LABELS "${arg_LABELS}"
        ENVIRONMENT "${VELL_TEST_ENVIRONMENT}")
    if(arg_POSTGRES AND VELL_BUILD_SERVICE)
        add_test(NAME postgresql/${name} COMMAND ${name})
        set_tests_properties(postgresql/${name} PROPERTIES
            TIMEOUT 300
            LABELS "${arg_LABELS};postgresql"
            FIXTURES_REQUIRED postgresql
            ENVIRONMENT "${VELL_TEST_ENVIRONMENT};VELL_TEST_POSTGRES=${VELL_TEST_POSTGRES}")
    endif()
    if(folder IN_LIST VELL_RECORDING_FOLDERS AND NOT CMAKE_CROSSCOMPILING)
        set_property(TEST ${folder}/${name} APPEND PROPERTY ENVIRONMENT
            "VELL_RECORD_EXCHANGES=${VELL_EXCHANGES}")
        set_property(TEST ${folder}/${name} PROPERTY FIXTURES_REQUIRED exchanges)
    endif()
endfunction()

# vell_not_run_here(<folder>/<subject> <reason>)
# Shows in the list of CTest, as disabled, what this build does not run and why.
function(vell_not_run_here name reason)
    vell_refuse_unknown_arguments(vell_not_run_here ${ARGN})
    add_test(NAME "${name} (${reason})" COMMAND "${CMAKE_COMMAND}" -E false)
    set_tests_properties("${name} (${reason})" PROPERTIES DISABLED TRUE)
endfunction()
