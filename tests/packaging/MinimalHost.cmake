# Installs what is built into a folder of its own, builds the outside project there and runs it.
# -D BUILD=... -D SOURCE=... -D WORK=... -D COMPILER=...
function(run)
    # Apart from each other: the toolkit has its own words on standard error where a session has no folders of its own.
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix")
run("${CMAKE_COMMAND}" -S "${SOURCE}/packaging/minimal-host" -B "${WORK}/build" -G Ninja
    "-DCMAKE_PREFIX_PATH=${WORK}/prefix" "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK}/build")
run("${WORK}/build/minimal-host" --check)
if(NOT output STREQUAL "Testo\nSi/No\nNumerico\nDecimale\nLista\nData\n")
    message(FATAL_ERROR "minimal-host printed:\n${output}")
endif()
run("${WORK}/prefix/bin/tematica" --version)
