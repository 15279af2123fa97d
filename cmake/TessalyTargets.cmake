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
    # The optimiser's analyses of null pointers and unset values misfire on the instrumented code. What class an object
    # has is not looked into: without the optimiser, each object would ask for what the toolkit does not export.
    target_compile_options(TessalyOptions INTERFACE
        -fsanitize=${TESSALY_SANITIZERS} -fno-sanitize=vptr $<$<BOOL:$<TARGET_PROPERTY:TESSALY_IS_QUICK>>:-fno-sanitize=undefined>
        -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-null-dereference
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(TessalyOptions INTERFACE -fsanitize=${TESSALY_SANITIZERS})
endif()

# Qt's headers, read once for all the targets that are compiled with the same options. Those are cheap to have that
# nearly every source needs: the whole of QtCore takes more to load than a typical source saves.
function(tessaly_precompiled_headers name)
    file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
    add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
    # Only the include paths of the other modules: what is defined for the precompiled header must be for its users.
    target_include_directories(${name} SYSTEM PRIVATE
        $<TARGET_PROPERTY:Qt6::Widgets,INTERFACE_INCLUDE_DIRECTORIES>
        $<TARGET_PROPERTY:Qt6::Gui,INTERFACE_INCLUDE_DIRECTORIES>)
    target_link_libraries(${name} PRIVATE Qt6::Core TessalyOptions)
    target_precompile_headers(${name} PRIVATE
        <QtCore/QByteArray> <QtCore/QCoreApplication> <QtCore/QDateTime> <QtCore/QDir> <QtCore/QFileInfo> <QtCore/QHash>
        <QtCore/QLocale> <QtCore/QLoggingCategory> <QtCore/QMimeData> <QtCore/QObject> <QtCore/QPointer>
        <QtCore/QProcess> <QtCore/QPropertyAnimation> <QtCore/QString> <QtCore/QTimer> <QtCore/QUrl> <QtCore/QUuid>
        <QtCore/QVariant> <QtGui/QGuiApplication> <QtGui/QImage> <QtGui/QKeyEvent> <QtGui/QPainter> <QtGui/QPainterPath>
        <QtWidgets/QApplication> <QtWidgets/QWidget>
        <algorithm> <chrono> <functional> <map> <memory> <optional> <string> <thread> <vector>)
endfunction()

# tessaly_compile_quickly(name) — has the target's sources compiled without optimisation and, beside other sanitizers,
# without the checks of undefined behaviour: those take half of the time.
function(tessaly_compile_quickly name)
    set_target_properties(${name} PROPERTIES TESSALY_IS_QUICK ON)
    target_compile_options(${name} PRIVATE -O0)
endfunction()

# tessaly_precompile(name) — with TESSALY_PRECOMPILE, lets the target's sources start with Qt's headers read once for all.
# The debug preset has none: there, as in lint, a source has to include what it uses.
function(tessaly_precompile name)
    if(NOT TESSALY_PRECOMPILE)
        return()
    endif()
    # One for each set of options: the compiler takes none that was read with others.
    get_target_property(is_quick ${name} TESSALY_IS_QUICK)
    set(shared TessalyPrecompiled)
    if(is_quick)
        set(shared TessalyPrecompiledForTests)
    endif()
    if(NOT TARGET ${shared})
        tessaly_precompiled_headers(${shared})
        if(is_quick)
            tessaly_compile_quickly(${shared})
        endif()
    endif()
    target_precompile_headers(${name} REUSE_FROM ${shared})
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
    tessaly_unite(${name})
endfunction()

# The selection engine; the store with its queue and index; the pictures and what else runs off the main thread.
string(JOIN "|" TESSALY_THREADED
    EngineTest DataControlEngine SelectionEngine SelectionReader SelectionOwner X11Pasteboard PasteboardWatcher
    HistoryCoding HistoryDisk HistorySaver JSONHistoryStore SearchIndex SerialQueue
    FileKinds IconCache ImageBlobs NumberedCopy OffMainThread PictureTranscoder ThumbFiles Thumbs)

# Sets result to "threads" when what the source tries, the first thing it includes, has threads of its own: those are the
# thread sanitizer's tests.
function(tessaly_label_of_threads result source)
    file(STRINGS ${source} subject LIMIT_COUNT 1 REGEX "^#include")
    set(${result} "" PARENT_SCOPE)
    if(subject MATCHES "(${TESSALY_THREADED})\\.h")
        set(${result} threads PARENT_SCOPE)
    endif()
endfunction()

# tessaly_moc(name sources…) — reads the classes of the sources, as AUTOMOC would, for a program of one or two sources: there
# its look at the whole target, and the empty source that it adds, take as long as to compile the test.
function(tessaly_moc name)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/${name}_classes)
    file(MAKE_DIRECTORY ${folder})
    foreach(source IN LISTS ARGN)
        file(STRINGS ${source} classes LIMIT_COUNT 1 REGEX "Q_OBJECT")
        cmake_path(GET source STEM read)
        if(source MATCHES "\\.h$")
            set(read ${folder}/moc_${read}.cpp)
        else()
            set(read ${folder}/${read}.moc)
        endif()
        if(classes)
            qt6_generate_moc(${source} ${read} TARGET ${name})
            target_sources(${name} PRIVATE ${read})
        endif()
    endforeach()
    target_include_directories(${name} PRIVATE ${folder})
endfunction()

# tessaly_test(name SOURCES … LINKS targets… [LABELS …] [TIMEOUT seconds])
# One Qt Test program, registered with ctest. What it tries is compiled as the user gets it; the program itself need not
# be fast, and is not where TESSALY_QUICK_TESTS saves the compiler's time.
function(tessaly_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINKS;LABELS" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 600)
    endif()
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINKS} Qt6::Test TessalyOptions)
    target_include_directories(${name} BEFORE PRIVATE ${PROJECT_SOURCE_DIR}/Tests/Support/Patience)
    tessaly_moc(${name} ${arg_SOURCES})
    if(TESSALY_QUICK_TESTS)
        tessaly_compile_quickly(${name})
    endif()
    tessaly_precompile(${name})
    add_test(NAME ${name} COMMAND ${name})
    list(GET arg_SOURCES 0 source)
    tessaly_label_of_threads(threads ${source})
    list(APPEND arg_LABELS ${threads})
    if(NOT e2e IN_LIST arg_LABELS)
        list(APPEND arg_LABELS unit)
    endif()
    # A function has as long as its program: on a busy machine the five minutes of Qt Test can be too short.
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QTEST_FUNCTION_TIMEOUT=${arg_TIMEOUT}000")
endfunction()
