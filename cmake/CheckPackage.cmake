# cmake -DBUILD=... -DSOURCE=... -DPLACE=... -DFLAGS=... -DCOMPILER=... -P CheckPackage.cmake: installs a build to an
# empty place, builds the example program there against nothing but the package, and runs it.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE failed OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(failed)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
endfunction()

file(REMOVE_RECURSE ${PLACE})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${PLACE}/installed)
set(wanted_files share/anomalis/examples/dyke_swarm.axm bin/anomalis-batch
    share/anomalis/examples/dyke_lines.toml share/anomalis/schemas/find.json share/man/man1/anomalis-batch-find.1 share/bash-completion/completions/anomalis-batch
    share/zsh/vendor-completions/_anomalis-batch share/fish/vendor_completions.d/anomalis-batch.fish)
if(EXISTS ${PLACE}/installed/bin/anomalis)
  list(APPEND wanted_files share/anomalis/anomalis.qch share/doc/anomalis/html/index.html)
endif()
foreach(wanted IN LISTS wanted_files)
  if(NOT EXISTS ${PLACE}/installed/${wanted})
    message(FATAL_ERROR "${wanted} was not installed")
  endif()
endforeach()
run(${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 ${PLACE}/installed/bin/anomalis-batch --version)
if(EXISTS ${PLACE}/installed/bin/anomalis)
  set(id org.anomalis.Anomalis)
  foreach(wanted applications/${id}.desktop metainfo/${id}.metainfo.xml mime/packages/${id}.xml
      icons/hicolor/scalable/apps/${id}.svg)
    if(NOT EXISTS ${PLACE}/installed/share/${wanted})
      message(FATAL_ERROR "${wanted} was not installed")
    endif()
  endforeach()
  run(${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 ${PLACE}/installed/bin/anomalis-batch render
    ${PLACE}/installed/share/anomalis/examples/dyke_swarm.axm -o ${PLACE}/dyke_swarm.svg)
endif()
run(${CMAKE_COMMAND} -S ${SOURCE} -B ${PLACE}/build -G Ninja -DCMAKE_PREFIX_PATH=${PLACE}/installed
  -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS})
run(${CMAKE_COMMAND} --build ${PLACE}/build)
run(${PLACE}/build/buried_cube)
