# tematica_dialogs(NAME LINKS ...): the dialogs of one module as a static library; subjects add their files with
# target_sources(). Hidden, so that the shared library shows only its exported functions.
function(tematica_dialogs name)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    add_library(${name} STATIC)
    target_link_libraries(${name} PRIVATE tematica_options tematica_warnings PUBLIC ${ARG_LINKS})
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC OFF
        CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    target_include_directories(${name} SYSTEM PRIVATE "${PROJECT_BINARY_DIR}/forms")
endfunction()

# tematica_forms(TARGET CDlgName...): headers ui_CDlgName.h made from res/forms/CDlgName.ui for the target's sources.
function(tematica_forms target)
    foreach(form ${ARGN})
        set(header "${PROJECT_BINARY_DIR}/forms/ui_${form}.h")
        add_custom_command(OUTPUT "${header}"
            COMMAND ${CMAKE_COMMAND} -E make_directory "${PROJECT_BINARY_DIR}/forms"
            COMMAND Qt6::uic -o "${header}" "${PROJECT_SOURCE_DIR}/res/forms/${form}.ui"
            DEPENDS "${PROJECT_SOURCE_DIR}/res/forms/${form}.ui" Qt6::uic VERBATIM)
        # A target of its own: subjects call this from their folders, where the module's target was not made.
        add_custom_target(${target}_${form} DEPENDS "${header}")
        add_dependencies(${target} ${target}_${form})
    endforeach()
endfunction()

# tematica_ui_test(NAME SOURCES ... LINKS ...): a test program of windows, with the drivers of tests/support/ui.
function(tematica_ui_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;LABELS" ${ARGN})
    tematica_test(${name} QT LABELS ui ${ARG_LABELS} SOURCES ${ARG_SOURCES}
        LINKS tematica_test_ui ${ARG_LINKS} tematica_kit tematica_kit_texts Qt6::Test)
endfunction()

# tematica_register_dialogs(SOURCE file LINKS ...): adds a file with RegisterDialog objects to the common checks.
function(tematica_register_dialogs)
    cmake_parse_arguments(ARG "" "SOURCE" "LINKS" ${ARGN})
    target_sources(dialog_checks PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_SOURCE}")
    target_link_libraries(dialog_checks PRIVATE ${ARG_LINKS})
endfunction()
