# Language and warnings as two targets, linked privately by every target of the house and exported by none.
option(TEMATICA_WERROR "Warnings are errors" OFF)

add_library(tematica_options INTERFACE)
target_compile_features(tematica_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
target_compile_definitions(tematica_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS)
target_include_directories(tematica_options INTERFACE
    "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
if(TEMATICA_SANITIZE)
    target_compile_options(tematica_options INTERFACE
        -fsanitize=${TEMATICA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(tematica_options INTERFACE -fsanitize=${TEMATICA_SANITIZE})
    # GCC 12 takes the sanitizers' own code in <regex> and <functional> for reads of unset values.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(tematica_options INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()

add_library(tematica_warnings INTERFACE)
target_compile_options(tematica_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wold-style-cast -Wnon-virtual-dtor
    -Wsuggest-override -Woverloaded-virtual -Wcast-qual -Wextra-semi -Wformat=2
    # GCC 12 at -O3 takes "text" + std::string for an overlapping copy (GCC bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${TEMATICA_WERROR}>:-Werror>)
