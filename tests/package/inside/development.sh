# Inside the bare system: programs of others on our libraries, by both names of the package.
# shellcheck shell=bash
example=/usr/share/anomalis/examples/buried_cube
cmake -S $example -B /tmp/buried_cube -G Ninja >/dev/null
cmake --build /tmp/buried_cube >/dev/null
/tmp/buried_cube/buried_cube

mkdir /tmp/rooms
cat >/tmp/rooms/CMakeLists.txt <<'LIST'
cmake_minimum_required(VERSION 3.25)
project(rooms LANGUAGES CXX)
find_package(Anomalis REQUIRED)
add_executable(rooms rooms.cpp)
target_link_libraries(rooms PRIVATE Anomalis::flow Anomalis::diagnostics Anomalis::transform)
LIST
cat >/tmp/rooms/rooms.cpp <<'CODE'
#include <cstdio>

#include "flow/examples.h"

int main() {
    const auto found = anomalis::flow::find_examples("/usr/bin");
    for (const auto& example : found) std::printf("%s\n", example.path.c_str());
    return found.empty();
}
CODE
cmake -S /tmp/rooms -B /tmp/rooms/build -G Ninja >/dev/null
cmake --build /tmp/rooms/build >/dev/null
/tmp/rooms/build/rooms
