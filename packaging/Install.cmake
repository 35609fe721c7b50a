# What is installed: programs, the two libraries, the headers of hosts, and a package that CMake finds.
include(CMakePackageConfigHelpers)
set(headers "${CMAKE_INSTALL_INCLUDEDIR}/tematica-${PROJECT_VERSION_MAJOR}")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/Tematica")

# "host/..." and "tematica/..." as in the sources; in a folder of their own, since "host" is everybody's word.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/tematica" "${PROJECT_SOURCE_DIR}/host"
    DESTINATION "${headers}" FILES_MATCHING PATTERN "*.h")
target_include_directories(tematica-host INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${headers}>)
target_compile_features(tematica-host INTERFACE cxx_std_20)

set(targets tematica-host tematica-host-gdal tematica-cli)
foreach(target tematica tematica-desktop)
    if(TARGET ${target})
        list(APPEND targets ${target})
    endif()
endforeach()
if(TARGET tematica)
    target_include_directories(tematica INTERFACE $<INSTALL_INTERFACE:${headers}>)
    target_compile_features(tematica INTERFACE cxx_std_20)
endif()
if(TARGET tematica-host-controls)
    list(APPEND targets tematica-host-controls)
endif()
if(TARGET tematica-host-drawing)
    list(APPEND targets tematica-host-drawing)
endif()
install(TARGETS ${targets} EXPORT TematicaTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(EXPORT TematicaTargets NAMESPACE Tematica:: DESTINATION "${package}")

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/TematicaConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/TematicaConfig.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TematicaConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TematicaConfig.cmake" "${PROJECT_BINARY_DIR}/TematicaConfigVersion.cmake"
    DESTINATION "${package}")
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
    DESTINATION "${CMAKE_INSTALL_DOCDIR}")

# The contract suite, for those who write a host of their own.
set(contract "${CMAKE_INSTALL_DATADIR}/tematica/contract")
install(FILES "${PROJECT_SOURCE_DIR}/packaging/contract/CMakeLists.txt" DESTINATION "${contract}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/tests/contract" DESTINATION "${contract}/tests"
    FILES_MATCHING PATTERN "*.h" PATTERN "*Contract.cpp")
install(FILES "${PROJECT_SOURCE_DIR}/tests/support/Describe.cpp" "${PROJECT_SOURCE_DIR}/tests/support/Describe.h"
    "${PROJECT_SOURCE_DIR}/tests/support/LibraryNotation.cpp" "${PROJECT_SOURCE_DIR}/tests/support/LibraryNotation.h"
    "${PROJECT_SOURCE_DIR}/tests/support/LibraryPlan.h"
    "${PROJECT_SOURCE_DIR}/tests/support/NotationReader.cpp" "${PROJECT_SOURCE_DIR}/tests/support/NotationReader.h"
    DESTINATION "${contract}/tests/support")
