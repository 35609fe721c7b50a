# Builds the installed contract suite in a project outside of the tree and runs what needs no data.
# -D BUILD=... -D SOURCE=... -D WORK=... -D COMPILER=... -D FLAGS=...
include("${CMAKE_CURRENT_LIST_DIR}/Run.cmake")

file(REMOVE_RECURSE "${WORK}")
run("${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/prefix")
run("${CMAKE_COMMAND}" -S "${SOURCE}/tests/packaging/contract" -B "${WORK}/build" -G Ninja
    "-DCMAKE_PREFIX_PATH=${WORK}/prefix" "-DCONTRACT=${WORK}/prefix/share/tematica/contract"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}")
run("${CMAKE_COMMAND}" --build "${WORK}/build")
run("${WORK}/build/host-contract" --gtest_filter=*NullEntitiesAreHarmless*)
if(NOT output MATCHES "PASSED.*1 test")
    message(FATAL_ERROR "the suite did not run:\n${output}")
endif()
