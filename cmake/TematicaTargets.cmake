# tematica_objects(NAME sources...): one module of the house as an object library with the house's options.
# Visible by default (host modules); HIDDEN for what goes into the shared library `tematica`.
function(tematica_objects name)
    cmake_parse_arguments(ARG "HIDDEN;QT" "" "SOURCES;LINKS" ${ARGN})
    if(NOT ARG_SOURCES)
        # A module without sources yet must not stop the others from being configured.
        set(ARG_SOURCES "${CMAKE_CURRENT_BINARY_DIR}/${name}_empty.cpp")
        file(CONFIGURE OUTPUT "${ARG_SOURCES}" CONTENT "")
    endif()
    add_library(${name} OBJECT ${ARG_SOURCES} ${ARG_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE tematica_options tematica_warnings ${ARG_LINKS})
    if(ARG_HIDDEN)
        set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    endif()
    if(ARG_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC OFF)
    endif()
endfunction()

# Tests are most of a build, and their time goes into what they test: compiling them fast is worth more than their speed.
# -fPIC, which Qt asks for, everywhere, because a precompiled header is taken only by what is compiled alike.
set(tematica_test_options -Og -g1 -fPIC)

# tematica_test_headers(NAME LINKS ... HEADERS ...): headers that nearly every test reads, compiled once for all test
# programs.
function(tematica_test_headers name)
    cmake_parse_arguments(ARG "" "" "LINKS;HEADERS" ${ARGN})
    set(empty "${CMAKE_BINARY_DIR}/${name}.cpp")
    file(CONFIGURE OUTPUT "${empty}" CONTENT "")
    add_library(${name} OBJECT "${empty}")
    target_link_libraries(${name} PRIVATE tematica_options tematica_warnings GTest::gtest ${ARG_LINKS})
    target_compile_options(${name} PRIVATE ${tematica_test_options})
    target_precompile_headers(${name} PRIVATE <gtest/gtest.h> ${ARG_HEADERS})
endfunction()

# tematica_test(NAME LABELS unit SOURCES a.cpp LINKS tematica-host): one GoogleTest program, its cases known to ctest.
function(tematica_test name)
    cmake_parse_arguments(ARG "QT" "TIMEOUT" "SOURCES;LINKS;LABELS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tematica_options tematica_warnings ${ARG_LINKS} GTest::gmock tematica_test_main)
    target_compile_definitions(${name} PRIVATE
        TEMATICA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
        TEMATICA_DEFAULT_TEST_DATA="${PROJECT_SOURCE_DIR}/../shared/data")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/tests")
    target_compile_options(${name} PRIVATE ${tematica_test_options})
    if(ARG_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_precompile_headers(${name} REUSE_FROM tematica_ui_test_headers)
    else()
        target_precompile_headers(${name} REUSE_FROM tematica_test_headers)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 300)
    endif()
    # Locale and time zone are the caller's: the suite is run under several. One ctest entry a program: discovery of single cases would start every program hundreds of times.
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;TEMATICA_INI=${CMAKE_CURRENT_BINARY_DIR}/${name}.ini;${ARG_ENVIRONMENT}")
endfunction()

# tematica_fuzz(NAME SOURCES a.cpp LINKS tematica-host [CORPUS folder]): a libFuzzer program (clang, preset tidy), built by the target
# tematica_fuzz_all and run for a bounded time by .ci/run.
function(tematica_fuzz name)
    cmake_parse_arguments(ARG "" "CORPUS" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} EXCLUDE_FROM_ALL ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tematica_options tematica_warnings ${ARG_LINKS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/fuzz")
    if(NOT TARGET tematica_fuzz_all)
        add_custom_target(tematica_fuzz_all)
    endif()
    add_dependencies(tematica_fuzz_all ${name})
    # What to begin with lies beside the program, where .ci/run finds it.
    if(ARG_CORPUS)
        file(COPY "${ARG_CORPUS}/" DESTINATION "${PROJECT_BINARY_DIR}/fuzz/${name}.corpus")
    endif()
endfunction()
