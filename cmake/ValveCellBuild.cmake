# Compiler settings, and one function for each kind of target, so that a folder's CMakeLists.txt is a line or two.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTORCC ON)

# The program, its library and every module lie in one folder: the application's directory.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

# "Dev": as fast as a release where it matters, with assertions and line numbers. CMake has put empty flags of an unknown
# build type into the cache by now.
if(NOT CMAKE_CXX_FLAGS_DEV AND NOT MSVC)
    set(CMAKE_CXX_FLAGS_DEV "-O2 -g1" CACHE STRING "Flags of the Dev build type" FORCE)
endif()

# What ccache has to overlook to keep units with precompiled headers; they use no macro of the time.
find_program(VALVECELL_CCACHE ccache)
if(VALVECELL_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${VALVECELL_CCACHE}")
endif()

# It links a test in a sixth of the usual linker's time, and comes with it.
include(CheckLinkerFlag)
check_linker_flag(CXX -fuse-ld=gold VALVECELL_GOLD)
if(VALVECELL_GOLD)
    add_link_options(-fuse-ld=gold)
endif()

add_library(vc_flags INTERFACE)
target_compile_definitions(vc_flags INTERFACE
    QT_DISABLE_DEPRECATED_BEFORE=0x060000 QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
if(MSVC)
    target_compile_options(vc_flags INTERFACE /W4 /utf-8 /permissive- $<$<BOOL:${VALVECELL_WERROR}>:/WX>)
else()
    target_compile_options(vc_flags INTERFACE -Wall -Wextra -Wpedantic $<$<BOOL:${VALVECELL_WERROR}>:-Werror>)
endif()
if(NOT MSVC AND NOT APPLE AND NOT VALVECELL_SANITIZE)
    add_link_options($<$<OR:$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>,$<STREQUAL:$<TARGET_PROPERTY:TYPE>,MODULE_LIBRARY>>:-Wl,--no-undefined>)
endif()
if(VALVECELL_SANITIZE)
    add_compile_options(-fsanitize=${VALVECELL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=${VALVECELL_SANITIZE})
endif()

# A header that comes new is looked through for signals and slots at the next build: by itself, CMake's own step only
# runs again when a header that it knows has changed.
function(vc_watch_headers target)
    get_target_property(sources ${target} SOURCES)
    set(seen "${CMAKE_CURRENT_BINARY_DIR}/${target}-sources.txt")
    set(before "")
    if(EXISTS "${seen}")
        file(READ "${seen}" before)
    endif()
    if(NOT before STREQUAL "${sources}")
        file(REMOVE "${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/timestamp")
        file(WRITE "${seen}" "${sources}")
    endif()
endfunction()

# With CMAKE_UNITY_BUILD a target is compiled folder by folder, which takes half the time of file by file; so within a
# folder no two files give a local thing the same name. Not for daily work, where one changed file would compile all.
function(vc_unite_folders target)
    if(NOT CMAKE_UNITY_BUILD)
        return()
    endif()
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source ${sources})
        get_filename_component(folder "${source}" DIRECTORY)
        string(MAKE_C_IDENTIFIER "${folder}" group)
        set_source_files_properties("${source}" PROPERTIES UNITY_GROUP "${group}")
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

# The headers of OpenCV and Qt, read once for a library of many small units. Not for daily work either, where every file
# has to say for itself what it needs.
function(vc_precompile_vision target)
    if(CMAKE_UNITY_BUILD)
        target_precompile_headers(${target} PRIVATE <opencv2/imgproc.hpp> <QtCore> <QImage> <QPainter>)
    endif()
endfunction()

# vc_room(<name> SOURCES ... LINK ...): the static library vc_<name> of src/<name>/; headers are included as
# "<name>/Header.h".
function(vc_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;LINK" ${ARGN})
    add_library(vc_${name} STATIC ${ROOM_SOURCES})
    vc_watch_headers(vc_${name})
    vc_unite_folders(vc_${name})
    target_include_directories(vc_${name} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(vc_${name} PUBLIC ${ROOM_LINK} PRIVATE vc_flags)
endfunction()

# vc_module(<name> SOURCES ... LINK ...): a module that the program loads at run time by that very name.
function(vc_module name)
    cmake_parse_arguments(MODULE "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} MODULE ${MODULE_SOURCES} "${CMAKE_SOURCE_DIR}/cmake/ModuleVersion.cpp")
    target_compile_definitions(${name} PRIVATE VALVECELL_VERSION="${PROJECT_VERSION}")
    vc_watch_headers(${name})
    vc_unite_folders(${name})
    set_target_properties(${name} PROPERTIES PREFIX "")
    target_link_libraries(${name} PRIVATE valvecell::sdk ${MODULE_LINK} vc_flags)
    # What the module shares with the program is linked into both: none may take the other's for its own.
    if(NOT MSVC AND NOT VALVECELL_SANITIZE)
        target_link_options(${name} PRIVATE -Wl,--exclude-libs,ALL)
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION bin)
endfunction()

# vc_app(<name> SOURCES ... LINK ...): a program beside the library.
function(vc_app name)
    cmake_parse_arguments(APP "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${APP_SOURCES})
    vc_watch_headers(${name})
    vc_unite_folders(${name})
    target_link_libraries(${name} PRIVATE ${APP_LINK} vc_flags)
    install(TARGETS ${name} RUNTIME DESTINATION bin)
endfunction()

# A test's own code is no faster for being optimised, but compiled in half the time if it is not.
set(VALVECELL_TEST_OPTIONS "")
if(NOT MSVC AND NOT VALVECELL_SANITIZE)
    set(VALVECELL_TEST_OPTIONS -O0)
endif()

# The headers of Qt and of the standard library, compiled once for all tests with or without widgets.
function(vc_precompile_test target)
    set(headers <QtTest> <QImage> <QPainter> <algorithm> <functional> <map> <memory> <optional>)
    set(owner vc_test_gui)
    get_target_property(links ${target} LINK_LIBRARIES)
    if(links MATCHES "Widgets|vc_(graphics|viewer|forms|dialogs|panels|host|designer|results$|results;)")
        list(APPEND headers <QApplication> <QComboBox> <QDialog> <QGraphicsView> <QLabel> <QMainWindow> <QTableView>)
        set(owner vc_test_widgets)
    endif()
    if(NOT TARGET ${owner})
        # A program as the tests are: code for a library is compiled with other options.
        file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/${owner}.cpp" CONTENT "int main() {}\n")
        add_executable(${owner} "${CMAKE_BINARY_DIR}/${owner}.cpp")
        set_target_properties(${owner} PROPERTIES AUTOMOC OFF RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
        target_compile_options(${owner} PRIVATE ${VALVECELL_TEST_OPTIONS})
        target_link_libraries(${owner} PRIVATE Qt5::Test Qt5::Gui vc_flags)
        if(owner STREQUAL vc_test_widgets)
            target_link_libraries(${owner} PRIVATE Qt5::Widgets)
        endif()
        target_precompile_headers(${owner} PRIVATE ${headers} "${CMAKE_SOURCE_DIR}/tests/support/Patience.h")
    endif()
    target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()

# Only what has signals and slots of its own goes through Qt's compiler: it takes a tenth of CMake's own step.
function(vc_moc_test target)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF UNITY_BUILD OFF)
    get_target_property(sources ${target} SOURCES)
    foreach(source ${sources})
        get_filename_component(source "${source}" ABSOLUTE)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
        file(STRINGS "${source}" objects REGEX "^ *Q_(OBJECT|GADGET)")
        get_filename_component(name "${source}" NAME_WE)
        set(folder "${CMAKE_CURRENT_BINARY_DIR}/${target}_moc")
        if(objects AND source MATCHES "\\.cpp$")
            qt5_generate_moc("${source}" "${folder}/${name}.moc" TARGET ${target})
            target_sources(${target} PRIVATE "${folder}/${name}.moc")
        elseif(objects)
            qt5_generate_moc("${source}" "${folder}/moc_${name}.cpp" TARGET ${target})
            target_sources(${target} PRIVATE "${folder}/moc_${name}.cpp")
        endif()
    endforeach()
    target_include_directories(${target} PRIVATE "${folder}")
endfunction()

# vc_test(<name> SOURCES ... LINK ... [TIMEOUT seconds]): a Qt Test program, run by CTest without a screen.
function(vc_test name)
    cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;LINK;DEPENDS" ${ARGN})
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 300)
    endif()
    if(VALVECELL_SANITIZE)
        math(EXPR TEST_TIMEOUT "4 * ${TEST_TIMEOUT}")
    endif()
    add_executable(${name} ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE VALVECELL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    target_link_libraries(${name} PRIVATE ${TEST_LINK} Qt5::Test vc_flags)
    target_compile_options(${name} PRIVATE ${VALVECELL_TEST_OPTIONS})
    vc_moc_test(${name})
    vc_precompile_test(${name})
    if(TEST_DEPENDS)
        add_dependencies(${name} ${TEST_DEPENDS})
    endif()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${TEST_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
    set_property(TARGET ${name} PROPERTY RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    if(name IN_LIST VALVECELL_THREADED_TESTS)
        set_tests_properties(${name} PROPERTIES LABELS threads)
        add_dependencies(threaded_tests ${name})
    endif()
endfunction()
