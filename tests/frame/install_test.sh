#!/bin/sh
# Installs the build into a scratch prefix, then builds and runs a C99 program
# with pkg-config and a CMake project with find_package(tpxcc CONFIG).
set -eu
build=$1 here=$2 work=$3
rm -rf "$work" && mkdir -p "$work"
cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
pc=$(dirname "$(find "$work/prefix" -name tpxcc.pc | head -n 1)")
libdir=$(dirname "$(find "$work/prefix" -name 'libtpxcc.so' | head -n 1)")
flags=$(PKG_CONFIG_PATH="$pc" pkg-config --cflags --libs tpxcc)
cc -std=c99 -pedantic -Wall -Wextra -Werror "$here/consumer.c" -o "$work/consumer" $flags
LD_LIBRARY_PATH="$libdir" "$work/consumer"
mkdir -p "$work/project"
cat > "$work/project/CMakeLists.txt" <<CMK
cmake_minimum_required(VERSION 3.16)
project(consumer C)
find_package(tpxcc CONFIG REQUIRED)
add_executable(consumer $here/consumer.c)
target_link_libraries(consumer PRIVATE tpxcc::tpxcc)
CMK
cmake -S "$work/project" -B "$work/project/build" -DCMAKE_PREFIX_PATH="$work/prefix" > "$work/cmake.log"
cmake --build "$work/project/build" > "$work/build.log"
LD_LIBRARY_PATH="$libdir" "$work/project/build/consumer"
