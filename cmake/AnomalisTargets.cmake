# One target a room. Flags hang on our own targets only, never on the whole project.

add_library(anomalis_flags INTERFACE)
target_compile_features(anomalis_flags INTERFACE cxx_std_20)
target_include_directories(anomalis_flags INTERFACE ${PROJECT_SOURCE_DIR}/src)
# g++ 12 sees overlaps in std::string that are not there (GCC bug 105651), hence no -Wrestrict.
# Contraction is off so that one model gives the same bits on every processor.
target_compile_options(anomalis_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Werror
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -ffp-contract=off -fno-math-errno)
if(ANOMALIS_FUZZ)
  target_compile_options(anomalis_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(ANOMALIS_SANITIZE)
  target_compile_options(anomalis_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(anomalis_flags INTERFACE -fsanitize=address,undefined)
endif()

# anomalis_room(NAME SOURCES ... [DEPENDS targets that a user of the room sees too] [PRIVATE ...])
function(anomalis_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;DEPENDS;PRIVATE" ${ARGN})
  add_library(anomalis_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(anomalis_${name} PUBLIC anomalis_flags ${ROOM_DEPENDS} PRIVATE ${ROOM_PRIVATE})
endfunction()

# The bodies of tests compile three times as fast unoptimised; what they test keeps its optimisation.
add_library(anomalis_test_flags INTERFACE)
target_include_directories(anomalis_test_flags INTERFACE ${PROJECT_SOURCE_DIR}/tests)
target_compile_options(anomalis_test_flags INTERFACE -O0)
target_link_libraries(anomalis_test_flags INTERFACE anomalis_flags)

# anomalis_test(NAME SOURCES ... DEPENDS ...): a GoogleTest program, each test its own ctest entry.
function(anomalis_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} GTest::gtest_main GTest::gmock)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

# anomalis_qt_test(NAME SOURCES ... DEPENDS ...): the same with an application on the offscreen platform.
function(anomalis_qt_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/qt_main.cpp)
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} GTest::gtest GTest::gmock Qt6::Test)
  # The libraries below Qt keep what they allocate until the end; that is not ours to free.
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "ASAN_OPTIONS=detect_leaks=0;QT_QPA_PLATFORM=offscreen")
endfunction()

# anomalis_window_test(NAME SOURCES ... TESTS one two ... DEPENDS ...): a Qt Test program without a display. Each test
# object is a ctest entry of its own, `test_NAME --only one`; all bear the label window, so that they can be left out.
function(anomalis_window_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;TESTS;DEPENDS" ${ARGN})
  add_executable(test_${name} ${TEST_SOURCES})
  target_link_libraries(test_${name} PRIVATE anomalis_test_flags ${TEST_DEPENDS} Qt6::Test)
  set_target_properties(test_${name} PROPERTIES AUTOMOC ON)
  foreach(test IN LISTS TEST_TESTS)
    add_test(NAME ${name}.${test} COMMAND test_${name} --only ${test})
    set_tests_properties(${name}.${test} PROPERTIES
      LABELS window TIMEOUT 900 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endforeach()
  if(NOT TEST_TESTS)
    add_test(NAME ${name} COMMAND test_${name})
    set_tests_properties(${name} PROPERTIES LABELS window TIMEOUT 900 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endif()
endfunction()

# anomalis_bench(NAME SOURCES ... DEPENDS ...): a Google Benchmark program.
function(anomalis_bench name)
  cmake_parse_arguments(BENCH "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(bench_${name} ${BENCH_SOURCES})
  target_link_libraries(bench_${name} PRIVATE anomalis_flags ${BENCH_DEPENDS} benchmark::benchmark_main benchmark::benchmark)
endfunction()
