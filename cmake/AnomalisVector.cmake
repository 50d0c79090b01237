# anomalis_vector_sources(TARGET files...): compiles each file once for every vector level and links the objects into
# TARGET. The file finds the name of its level's namespace in ANOMALIS_VECTOR_LEVEL. Elsewhere than on x86-64 there
# is the baseline only. Always optimised, since a kernel that is not shows nothing; the sanitizers stay.
function(anomalis_vector_sources target)
  set(levels baseline)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    list(APPEND levels avx2 avx512)
  endif()
  set(flags_baseline "")
  set(flags_avx2 -mavx2 -mfma)
  set(flags_avx512 -mavx2 -mfma -mavx512f -mavx512dq -mavx512vl -mprefer-vector-width=512)
  # Vectors are written out in the kernels. GCC's search for them in straight code fuses products and sums whatever
  # it is told, and only where a level has such instructions.
  set(flags_compiler "")
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(flags_compiler -fno-tree-slp-vectorize)
  endif()
  foreach(level IN LISTS levels)
    set(objects ${target}_${level})
    if(NOT TARGET ${objects})
      add_library(${objects} OBJECT)
      target_link_libraries(${objects} PRIVATE anomalis_flags)
      target_compile_definitions(${objects} PRIVATE ANOMALIS_VECTOR_LEVEL=vector_${level})
      # Vectors pass between inlined functions only, so their calling convention does not matter. Nothing is thrown.
      target_compile_options(${objects} PRIVATE -O3 -fno-exceptions -fno-trapping-math -Wno-psabi ${flags_compiler}
        ${flags_${level}})
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:${objects}>)
    endif()
    target_sources(${objects} PRIVATE ${ARGN})
  endforeach()
endfunction()

# anomalis_check_vector_sources(TARGET): a test that the wide objects of TARGET keep to their own namespaces.
function(anomalis_check_vector_sources target)
  anomalis_is_test_of_room(${target})
  foreach(level avx2 avx512)
    if(TARGET ${target}_${level})
      add_test(NAME vector_objects.${target}_${level}
        COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DLEVEL=${level}
          "-DOBJECTS=$<TARGET_OBJECTS:${target}_${level}>" -P ${PROJECT_SOURCE_DIR}/cmake/CheckVectorObjects.cmake)
      set_tests_properties(vector_objects.${target}_${level} PROPERTIES LABELS ${room})
    endif()
  endforeach()
endfunction()
