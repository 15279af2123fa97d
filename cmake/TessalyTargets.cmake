# What every target of the tree has in common: warnings as errors, Qt's strict macros, the sanitizers of the preset.

add_library(TessalyOptions INTERFACE)
target_compile_options(TessalyOptions INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
    -Wformat=2 -Wimplicit-fallthrough -Wnull-dereference -Werror
    $<$<CONFIG:Debug>:-Wno-null-dereference>)
target_compile_definitions(TessalyOptions INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(TESSALY_SANITIZERS)
    # The optimiser's analyses of null pointers and unset values misfire on the instrumented code.
    target_compile_options(TessalyOptions INTERFACE
        -fsanitize=${TESSALY_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-null-dereference
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(TessalyOptions INTERFACE -fsanitize=${TESSALY_SANITIZERS})
endif()

# tessaly_precompile(name) — with TESSALY_PRECOMPILE, lets the target's sources start with Qt's headers read once for all.
# Off where it must show that each source includes what it uses; on for builds that nobody keeps.
function(tessaly_precompile name)
    if(NOT TESSALY_PRECOMPILE)
        return()
    endif()
    if(NOT TARGET TessalyPrecompiled)
        file(WRITE ${CMAKE_BINARY_DIR}/TessalyPrecompiled.cpp "")
        add_library(TessalyPrecompiled OBJECT ${CMAKE_BINARY_DIR}/TessalyPrecompiled.cpp)
        # Only the include paths of the other modules: what is defined for the precompiled header must be for its users.
        target_include_directories(TessalyPrecompiled SYSTEM PRIVATE
            $<TARGET_PROPERTY:Qt6::Widgets,INTERFACE_INCLUDE_DIRECTORIES>
            $<TARGET_PROPERTY:Qt6::Gui,INTERFACE_INCLUDE_DIRECTORIES>)
        target_link_libraries(TessalyPrecompiled PRIVATE Qt6::Core TessalyOptions)
        target_precompile_headers(TessalyPrecompiled PRIVATE
            <QtCore/QtCore> <QtGui/QImage> <QtGui/QPainter> <QtGui/QGuiApplication> <QtWidgets/QWidget>
            <QtWidgets/QApplication> <algorithm> <chrono> <functional> <memory> <optional> <thread> <vector>)
    endif()
    target_precompile_headers(${name} REUSE_FROM TessalyPrecompiled)
endfunction()

# tessaly_public_headers(name) — lists the headers of the calling folder as the target's, for the check that each of them
# compiles alone (target all_verify_interface_header_sets). The compiler has seen as much of a header that is the first
# thing its own source includes, so only the others are compiled for that.
function(tessaly_public_headers name)
    cmake_parse_arguments(arg "RECURSE" "" "" ${ARGN})
    set(glob GLOB)
    if(arg_RECURSE)
        set(glob GLOB_RECURSE)
    endif()
    file(${glob} headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    set(seen_alone)
    foreach(header IN LISTS headers)
        cmake_path(REPLACE_EXTENSION header cpp OUTPUT_VARIABLE source)
        cmake_path(GET header FILENAME file)
        if(EXISTS ${source})
            file(STRINGS ${source} first LIMIT_COUNT 1 REGEX "^#include")
            if(first MATCHES "[\"/]${file}\"")
                list(APPEND seen_alone ${header})
            endif()
        endif()
    endforeach()
    list(REMOVE_ITEM headers ${seen_alone})
    target_sources(${name} INTERFACE
        FILE_SET HEADERS BASE_DIRS ${CMAKE_CURRENT_SOURCE_DIR} FILES ${seen_alone}
        FILE_SET others TYPE HEADERS BASE_DIRS ${CMAKE_CURRENT_SOURCE_DIR} FILES ${headers})
    set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON INTERFACE_HEADER_SETS_TO_VERIFY others)
endfunction()

# tessaly_library(name SOURCES … PUBLIC targets… PRIVATE targets…)
# A static library whose folder is its include path: only a target that links it can include its headers.
function(tessaly_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} TessalyOptions)
    tessaly_public_headers(${name})
    tessaly_precompile(${name})
endfunction()

# tessaly_test(name SOURCES … LINKS targets… [LABELS …] [TIMEOUT seconds])
# One Qt Test program, registered with ctest.
function(tessaly_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} Qt6::Test TessalyOptions)
    tessaly_precompile(${name})
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()
