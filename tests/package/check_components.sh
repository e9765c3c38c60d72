#!/usr/bin/env bash
# Each install component holds what it is for, the reader of media files is found where the package
# has it, and find_package knows the components of the package and says so of others.
# Usage: check_components.sh CXX BUILD_DIR
set -euo pipefail
cxx=$1 build_dir=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What a component installs must all match a pattern, and what is named be there.
check_component() { # NAME PATTERN FILE...
    local name=$1 pattern=$2 files
    shift 2
    cmake --install "$build_dir" --component "$name" --prefix "$work/$name" >/dev/null
    files=$(cd "$work/$name" && find . ! -type d)
    if grep -vE "$pattern" <<<"$files"; then
        echo "these are not for the component $name" >&2
        exit 1
    fi
    for file; do
        grep -q "/$file\$" <<<"$files" || { echo "$name lacks $file" >&2; exit 1; }
    done
}
check_component runtime '/(lib(zrdraw|zrhost)\.so\.[0-9.]+|zrdraw/clipFile\.so)$' \
    libzrdraw.so.1 libzrhost.so.1 zrdraw/clipFile.so
check_component development '(\.h|\.cmake|\.pc|/lib(zrdraw|zrhost)\.so)$' \
    zrdraw/zrdraw.h zrdraw/version.h zrdraw/platform/files.h zrdraw-config.cmake zrdraw.pc \
    zrhost.pc libzrdraw.so libzrhost.so
check_component tools '/(bin/zrdraw|man/man1/zrdraw[-a-z]*\.1|bash-completion/completions/zrdraw|vendor-completions/_zrdraw)$' \
    bin/zrdraw man/man1/zrdraw.1 man/man1/zrdraw-overlay.1 bash-completion/completions/zrdraw \
    zsh/vendor-completions/_zrdraw

cat >"$work/load.cpp" <<'END'
#include <dlfcn.h>
#include <zrdraw/platform/files.h>
// Both libraries as a program meets them that was linked to neither.
int main() {
    const bool alone = dlopen("libzrdraw.so.1", RTLD_NOW) != nullptr;
    void* const host = dlopen("libzrhost.so.1", RTLD_NOW | RTLD_GLOBAL);
    const auto load =
        reinterpret_cast<decltype(&zrOSLoadLibrary)>(dlsym(host, "zrOSLoadLibrary"));
    return alone || dlopen("libzrdraw.so.1", RTLD_NOW) == nullptr ||
           load("clipFile.so", RTLD_NOW) == nullptr;
}
END
include=$(dirname "$(find "$work/development" -name zrdraw.h)")/..
libraries=$(dirname "$(find "$work/runtime" -name libzrhost.so.1)")
"$cxx" -std=c++17 -I"$include" "$work/load.cpp" -o "$work/load"
LD_LIBRARY_PATH=$libraries "$work/load"

mkdir "$work/prefix"
cp -a "$work/runtime/." "$work/development/." "$work/prefix"
find_package() { # ARGUMENT...
    mkdir -p "$work/project"
    printf '%s\n' 'cmake_minimum_required(VERSION 3.25)' 'project(consumer LANGUAGES CXX)' \
        "find_package(zrdraw 1 REQUIRED $*)" >"$work/project/CMakeLists.txt"
    cmake -S "$work/project" -B "$work/project/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_PREFIX_PATH="$work/prefix" 2>&1
}
find_package COMPONENTS host zrdraw OPTIONAL_COMPONENTS sound >/dev/null
if answer=$(find_package COMPONENTS host sound); then
    echo "find_package takes an unknown component" >&2
    exit 1
fi
grep -q "no component 'sound'; there are: zrdraw, host" <<<"$answer"
