# SPDX-FileCopyrightText: 2026 Tematica contributors
# SPDX-License-Identifier: MIT
# Read by ./run, ./test and .ci/run: the ways in which they build.

jobs=$(nproc)
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache CMAKE_C_COMPILER_LAUNCHER=ccache
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros} # what precompiled headers need
fi

# build PRESET [TARGET...]: configures quietly and builds.
build() {
    local preset=$1
    shift
    mkdir -p "build/$preset"
    if ! cmake --preset "$preset" >"build/$preset/configure.log" 2>&1; then
        cat "build/$preset/configure.log" >&2
        return 1
    fi
    cmake --build --preset "$preset" --parallel "$jobs" ${1:+--target "$@"}
}

# has_target PRESET TARGET: whether a configured build knows a target.
has_target() {
    ninja -C "build/$1" -t query "$2" >/dev/null 2>&1
}

# Makes the Italian locale inside build/, since a system has it only where somebody chose it; nothing of the system is
# changed.
use_italian_locale() {
    export LOCPATH="$PWD/build/locale"
    if [ ! -d "$LOCPATH/it_IT.UTF-8" ]; then
        mkdir -p "$LOCPATH"
        localedef -i it_IT -f UTF-8 "$LOCPATH/it_IT.UTF-8"
    fi
    export LC_ALL=it_IT.UTF-8
}
