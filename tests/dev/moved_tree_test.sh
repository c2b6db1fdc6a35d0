#!/usr/bin/env bash
# moved_tree_test.sh SOURCE SCRATCH: `./dev` works in a tree that was configured, and then moved or copied. The tree is
# a small project in place of the product.
set -Eeuo pipefail
source=$1 scratch=$2
# shellcheck disable=SC1091
. "$source/tests/packaging/checks.sh"

rm -rf "$scratch"
tree=$scratch/first
mkdir -p "$tree/build/third_party/linux"
cp "$source/dev" "$tree/"
touch "$tree"/build/third_party/linux/.{fmtlib,libzip} # as if they had been built
cat >"$tree/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(Small LANGUAGES NONE)
file(WRITE ${CMAKE_BINARY_DIR}/program "#!/bin/sh\necho in ${CMAKE_SOURCE_DIR}: $@\n")
add_custom_target(product
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_SOURCE_DIR}/build/out-linux
  COMMAND install ${CMAKE_BINARY_DIR}/program ${CMAKE_SOURCE_DIR}/build/out-linux/zavhost)
CMAKE
cat >"$tree/CMakePresets.json" <<'PRESETS'
{
  "version": 6,
  "configurePresets": [{ "name": "linux", "generator": "Ninja", "binaryDir": "${sourceDir}/build/linux" }],
  "buildPresets": [{ "name": "linux", "configurePreset": "linux" }]
}
PRESETS

# works_in FOLDER
works_in() {
  local said
  said=$("$1/dev" run hello 2>said.txt) || cat said.txt >&2
  [ "$said" = "in $1: hello" ]
}
cd "$scratch"
check "./dev works in a new tree" 'works_in "$scratch/first"'
check "and does not build it anew each time" 'works_in "$scratch/first" && ! grep -q anew said.txt'
cp -r first copy
check "it works in a copy, and says why that is built anew" 'works_in "$scratch/copy" && grep -q anew said.txt'
mv first moved
check "it works in a tree that was moved" 'works_in "$scratch/moved"'
ln -s moved link
check "a link to it is no other place" 'link/dev run hello >/dev/null 2>said.txt && ! grep -q anew said.txt'

rm -rf "$scratch"
exit $((${failures:?} > 0))
