# What every target of the project shares, and the two functions that declare a module and a test.

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network DBus Svg)
find_package(QCoro6 0.8 REQUIRED COMPONENTS Core DBus)
find_package(nlohmann_json 3.11 REQUIRED)
find_package(tl-expected REQUIRED)
find_package(PkgConfig REQUIRED)
# C++20 switches coroutines on in both compilers. QCoro's own macro adds an option that newer clang has dropped.

add_library(varnel_options INTERFACE)
target_include_directories(varnel_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(varnel_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    # Debian 13 has Qt 6.8: what it deprecates beyond Qt 6.4 has no other name in Debian 12, and is no warning yet.
    target_compile_definitions(varnel_options INTERFACE QT_WARN_DEPRECATED_UP_TO=0x060400)
endif()
target_compile_options(varnel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-qual -Wimplicit-fallthrough
    -pthread) # as some libraries ask: units with and without it could not share precompiled headers
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Units that are compiled together are included by one file, as if they were headers: g++ warns of what is theirs alone.
    target_compile_options(varnel_options INTERFACE -Wno-subobject-linkage)
endif()
if(VARNEL_WERROR)
    target_compile_options(varnel_options INTERFACE -Werror)
endif()
if(VARNEL_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(varnel_options INTERFACE ${sanitizers})
    target_link_options(varnel_options INTERFACE ${sanitizers})
endif()
if(VARNEL_FUZZ)
    target_compile_options(varnel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(VARNEL_COVERAGE)
    set(coverage -fprofile-instr-generate -fcoverage-mapping)
    target_compile_options(varnel_options INTERFACE ${coverage})
    target_link_options(varnel_options INTERFACE ${coverage})
endif()

# What nearly every unit of a kind includes is compiled once: parsing Qt, the coroutines, the JSON library and the test
# library is most of the work of a build. A unit includes what it names all the same.
set(varnel_core_headers <QCoroTask> <QByteArray> <QDateTime> <QObject> <QString> <QStringList> <nlohmann/json.hpp>
    <tl/expected.hpp> <algorithm> <chrono> <functional> <memory> <optional> <utility> <variant> <vector>)

# varnel_precompile(<name> HEADERS <headers> [LINK <targets>]): an object library whose precompiled headers others use.
function(varnel_precompile name)
    cmake_parse_arguments(arg "" "" "HEADERS;LINK" ${ARGN})
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT ${PROJECT_BINARY_DIR}/${name}.cpp)
    target_link_libraries(${name} PRIVATE varnel_options Qt6::Core QCoro6::Core nlohmann_json::nlohmann_json tl::expected
        ${arg_LINK})
    target_precompile_headers(${name} PRIVATE ${varnel_core_headers} ${arg_HEADERS})
endfunction()
set(varnel_gui_headers <QApplication> <QLabel> <QMenu> <QPainter>)
varnel_precompile(varnel_precompiled)
varnel_precompile(varnel_precompiled_gui HEADERS ${varnel_gui_headers} LINK Qt6::Widgets)
if(VARNEL_TESTS)
    find_package(GTest REQUIRED)
    varnel_precompile(varnel_precompiled_test HEADERS <gmock/gmock.h> <gtest/gtest.h> LINK GTest::gtest GTest::gmock)
    varnel_precompile(varnel_precompiled_gui_test HEADERS ${varnel_gui_headers} <gmock/gmock.h> <gtest/gtest.h>
        LINK Qt6::Widgets GTest::gtest GTest::gmock)
endif()

# varnel_module(<name> [GUI] [MOC] SOURCES <files> [LINK <targets>]): one folder, one static library. What is linked here
# is all the module may include: the arrows of docs/architecture.md are these lines. MOC where a class has Q_OBJECT.
function(varnel_module name)
    cmake_parse_arguments(arg "GUI;MOC" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ${arg_MOC})
    set(kind "")
    if(arg_GUI)
        set(kind "_gui")
    endif()
    target_precompile_headers(${name} REUSE_FROM varnel_precompiled${kind})
    target_link_libraries(${name} PUBLIC varnel_options ${arg_LINK})
endfunction()

# varnel_test(<name> [GUI] [MOC] SOURCES <files> [LINK <targets>] [LABELS <labels>]): one GoogleTest binary, run without
# a display; GUI gives it a QApplication. Its results do not hang on the machine's language or zone.
function(varnel_test name)
    cmake_parse_arguments(arg "GUI;MOC" "" "SOURCES;LINK;LABELS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ${arg_MOC})
    set(kind "")
    if(arg_GUI)
        set(kind "_gui")
    endif()
    target_link_libraries(${name} PRIVATE varnel_options varnel${kind}_test_main ${arg_LINK})
    target_precompile_headers(${name} REUSE_FROM varnel_precompiled${kind}_test)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS "unit;${arg_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=Europe/Berlin;QT_LOGGING_RULES=")
endfunction()
