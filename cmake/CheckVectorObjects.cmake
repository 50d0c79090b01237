# cmake -DNM=... -DLEVEL=... -DOBJECTS=a.o;b.o -P CheckVectorObjects.cmake: fails when an object that was compiled for
# wide vectors defines a symbol outside the namespace of its level. The linker could take such a copy of a shared
# inline function for the whole program, which then stops on a processor without those vectors.
if(NOT OBJECTS)
  message(FATAL_ERROR "no objects to look at")
endif()
foreach(object IN LISTS OBJECTS)
  execute_process(COMMAND ${NM} --defined-only --extern-only ${object} OUTPUT_VARIABLE symbols
    RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "cannot read ${object}")
  endif()
  string(REGEX MATCHALL "[^\n]+" lines "${symbols}")
  foreach(line IN LISTS lines)
    if(NOT line MATCHES "vector_${LEVEL}")
      message(SEND_ERROR "${object} defines ${line}")
    endif()
  endforeach()
endforeach()
