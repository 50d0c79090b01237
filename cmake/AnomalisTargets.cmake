# One target a room. Flags hang on our own targets only, never on the whole project.

# What a user of a room needs too. Contraction is off so that one model gives the same bits on every processor, also
# where an inline function of ours is compiled into a stranger's program.
add_library(anomalis_usage INTERFACE)
target_compile_features(anomalis_usage INTERFACE cxx_std_20)
target_compile_options(anomalis_usage INTERFACE -ffp-contract=off)
target_include_directories(anomalis_usage INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/anomalis>)

# What only we compile with. A name of one file hides nothing in another of its group: builds of single files look for
# hidden names.
# g++ 12 sees overlaps in std::string that are not there (GCC bug 105651), hence no -Wrestrict.
add_library(anomalis_flags INTERFACE)
target_link_libraries(anomalis_flags INTERFACE anomalis_usage anomalis_hardening)
target_compile_options(anomalis_flags INTERFACE
  -Wall -Wextra -Wpedantic $<$<NOT:$<BOOL:${ANOMALIS_GROUPS}>>:-Wshadow> -Wnon-virtual-dtor $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -fno-math-errno
  $<$<CONFIG:Debug>:-D_GLIBCXX_ASSERTIONS>
  # Two builds in two folders give the same bytes: only what a debugger reads would tell them apart.
  $<$<CONFIG:RelWithDebInfo>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)
# The module for Python takes the rooms into itself. Said for all alike, since precompiled headers are shared.
if(ANOMALIS_PYTHON)
  target_compile_options(anomalis_flags INTERFACE -fPIC)
endif()
if(ANOMALIS_FUZZ)
  target_compile_options(anomalis_flags INTERFACE -fsanitize=fuzzer-no-link
    -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/ignored_by_sanitizers.txt)
  target_link_options(anomalis_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
# A fuzzer without them sees crashes alone.
if(ANOMALIS_SANITIZE OR ANOMALIS_FUZZ)
  # Undefined behaviour is looked for in what is tested; in the bodies of tests it costs a third of their compilation.
  # The checks of pointers cost as much everywhere: use of a bad one is what the address sanitizer sees. The build with
  # fuzzers, which has more time, has them all the same.
  set(test_body $<BOOL:$<TARGET_PROPERTY:ANOMALIS_TEST_BODY>>)
  if(NOT ANOMALIS_FUZZ)
    set(seen_otherwise $<$<NOT:${test_body}>:-fno-sanitize=null,alignment,object-size,pointer-overflow>)
  endif()
  target_compile_options(anomalis_flags INTERFACE -fsanitize=address
    $<$<NOT:${test_body}>:-fsanitize=undefined> ${seen_otherwise} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(anomalis_flags INTERFACE -fsanitize=address,undefined)
endif()

if(ANOMALIS_THREAD_SANITIZE)
  target_compile_options(anomalis_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(anomalis_flags INTERFACE -fsanitize=thread)
endif()

# The bodies of tests compile three times as fast unoptimised, and faster yet without names for a debugger: what fails
# in them tells its line itself. What they test keeps its optimisation.
add_library(anomalis_test_flags INTERFACE)
target_include_directories(anomalis_test_flags INTERFACE ${PROJECT_SOURCE_DIR}/tests)
target_compile_options(anomalis_test_flags INTERFACE -O0 -g0)
target_link_libraries(anomalis_test_flags INTERFACE anomalis_flags)

anomalis_headers(room HEADERS ${anomalis_standard_headers} DEPENDS anomalis_flags)
anomalis_headers(eigen HEADERS ${anomalis_standard_headers} <Eigen/Core> DEPENDS anomalis_flags Eigen3::Eigen)
if(ANOMALIS_WINDOW)
  anomalis_headers(window HEADERS ${anomalis_standard_headers} ${anomalis_window_headers}
    DEPENDS anomalis_flags Qt6::Widgets)
endif()
if(ANOMALIS_TESTS)
  anomalis_headers(test HEADERS ${anomalis_standard_headers} <gmock/gmock.h> <gtest/gtest.h>
    DEPENDS anomalis_test_flags GTest::gmock)
  set_target_properties(anomalis_test_headers PROPERTIES ANOMALIS_TEST_BODY ON)
  if(ANOMALIS_WINDOW)
    anomalis_headers(window_test HEADERS ${anomalis_standard_headers} ${anomalis_window_headers}
      DEPENDS anomalis_test_flags Qt6::Widgets)
    set_target_properties(anomalis_window_test_headers PROPERTIES ANOMALIS_TEST_BODY ON)
  endif()
endif()

# anomalis_in_groups(TARGET files...): lets the files of TARGET be compiled several at a time, which spares a build of
# everything a third of its time. The files named use a name in their unnamed namespace that another file of TARGET
# uses too, and stand apart.
function(anomalis_in_groups target)
  if(ARGN)
    set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${ANOMALIS_GROUPS} UNITY_BUILD_BATCH_SIZE 8)
  if(ANOMALIS_GROUPS)
    # A group is no header, though g++ takes it for one.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endfunction()

# anomalis_room(NAME SOURCES ... [APART files] [DEPENDS targets that a user of the room sees too] [PRIVATE ...]
#               [HEADERS set])
function(anomalis_room name)
  cmake_parse_arguments(ROOM "" "HEADERS" "SOURCES;APART;DEPENDS;PRIVATE" ${ARGN})
  add_library(anomalis_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(anomalis_${name}
    PUBLIC anomalis_usage ${ROOM_DEPENDS} PRIVATE $<BUILD_INTERFACE:anomalis_flags> ${ROOM_PRIVATE})
  if(NOT ROOM_HEADERS)
    set(ROOM_HEADERS room)
  endif()
  anomalis_use_headers(anomalis_${name} ${ROOM_HEADERS})
  anomalis_in_groups(anomalis_${name} ${ROOM_APART})
endfunction()

# anomalis_qt_room(NAME ...): the same for a room of the window system.
function(anomalis_qt_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(anomalis_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(anomalis_${name} PUBLIC ${ROOM_DEPENDS} PRIVATE anomalis_flags)
  set_target_properties(anomalis_${name} PROPERTIES AUTOMOC ON)
  anomalis_use_headers(anomalis_${name} window)
endfunction()

# anomalis_is_test_of_room(TARGET...): programs that the tests of the present folder run. The folder of a room below
# tests/ is the label of its tests in the caller's variable `room`, and tests_ROOM builds what they need.
function(anomalis_is_test_of_room)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/tests OUTPUT_VARIABLE folder)
  string(REGEX MATCH "^[a-z_]+" room ${folder})
  if(NOT TARGET tests_${room})
    add_custom_target(tests_${room})
    if(NOT room STREQUAL window)
      add_dependencies(tests_without_window tests_${room})
    endif()
  endif()
  add_dependencies(tests_${room} ${ARGN})
  set(room ${room} PARENT_SCOPE)
endfunction()

# anomalis_test(NAME SOURCES ... [APART files] DEPENDS ...): a GoogleTest program, each test its own ctest entry.
function(anomalis_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;APART;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} GTest::gtest_main GTest::gmock)
  set_target_properties(test_${name} PROPERTIES ANOMALIS_TEST_BODY ON)
  anomalis_use_headers(test_${name} test)
  anomalis_in_groups(test_${name} ${TEST_APART})
  anomalis_is_test_of_room(test_${name})
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 LABELS ${room})
endfunction()

# anomalis_qt_test(NAME SOURCES ... DEPENDS ...): the same with an application on the offscreen platform.
function(anomalis_qt_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/qt_main.cpp)
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} GTest::gtest GTest::gmock Qt6::Test)
  set_target_properties(test_${name} PROPERTIES ANOMALIS_TEST_BODY ON)
  anomalis_is_test_of_room(test_${name})
  # The libraries below Qt keep what they allocate until the end; that is not ours to free.
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES
    TIMEOUT 300 LABELS ${room} ENVIRONMENT "ASAN_OPTIONS=detect_leaks=0;QT_QPA_PLATFORM=offscreen")
endfunction()

# anomalis_window_test(NAME SOURCES ... [APART files] TESTS one two ... DEPENDS ...): a Qt Test program without a display. Each test
# object is a ctest entry of its own, `test_NAME --only one`; all bear the label of the room, so that they can be left out.
function(anomalis_window_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;APART;TESTS;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} Qt6::Test)
  set_target_properties(test_${name} PROPERTIES AUTOMOC ON ANOMALIS_TEST_BODY ON)
  anomalis_use_headers(test_${name} window_test)
  anomalis_in_groups(test_${name} ${TEST_APART})
  anomalis_is_test_of_room(test_${name})
  foreach(test IN LISTS TEST_TESTS)
    add_test(NAME ${name}.${test} COMMAND test_${name} --only ${test})
    set_tests_properties(${name}.${test} PROPERTIES
      LABELS ${room} TIMEOUT 900 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endforeach()
endfunction()

# anomalis_bench(NAME SOURCES ... DEPENDS ...): a Google Benchmark program.
function(anomalis_bench name)
  cmake_parse_arguments(BENCH "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(bench_${name} ${BENCH_SOURCES})
  target_link_libraries(bench_${name} PRIVATE anomalis_flags ${BENCH_DEPENDS} benchmark::benchmark_main benchmark::benchmark)
endfunction()
