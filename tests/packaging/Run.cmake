# Runs a command; its standard output is in `output`. Ends with all of its words where it fails.
function(run)
    # Apart from each other: the toolkit has its own words on standard error where a session has no folders of its own.
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()
