# Installs what is built into a folder of its own, builds the outside project there and runs it.
# -D BUILD=... -D SOURCE=... -D WORK=... -D COMPILER=...
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

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
