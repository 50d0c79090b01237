# `cmake --install`: the programs, the examples and papers where the programs look for them, and the rooms without a
# window as the package Anomalis: find_package(Anomalis) gives Anomalis::core, Anomalis::forward and so on.
include(CMakePackageConfigHelpers)

set(packaged_rooms core vector chart transform field intake forward filter model workspace_file inversion edit output
  diagnostics show flow)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Anomalis)

install(TARGETS anomalis-batch)
if(ANOMALIS_WINDOW)
  install(TARGETS anomalis)
  install(TARGETS anomalis-pictures LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/anomalis)
endif()
if(ANOMALIS_PYTHON)
  # Where the interpreter looks below the prefix: python3 -m site tells of its folders.
  set(ANOMALIS_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING "Folder of packages of Python, below the prefix")
  install(TARGETS anomalis_python LIBRARY DESTINATION ${ANOMALIS_PYTHON_FOLDER}/anomalis)
  install(FILES src/python/__init__.pyi src/python/py.typed DESTINATION ${ANOMALIS_PYTHON_FOLDER}/anomalis)
endif()
# Man pages and completions; those of a workbench that is not built stay away.
set(without_workbench)
if(NOT ANOMALIS_WINDOW)
  set(without_workbench REGEX "/_?anomalis(\\.1|\\.fish)?$" EXCLUDE)
endif()
install(DIRECTORY ${PROJECT_BINARY_DIR}/share/man/ DESTINATION ${CMAKE_INSTALL_MANDIR} ${without_workbench})
foreach(place bash-completion zsh fish)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/share/${place} DESTINATION ${CMAKE_INSTALL_DATADIR} ${without_workbench})
endforeach()
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/anomalis/examples
  FILES_MATCHING PATTERN *.axm PATTERN *.dat PATTERN *.csv PATTERN *.toml PATTERN first_line.py PATTERN package EXCLUDE)
install(DIRECTORY docs/reference/schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/anomalis)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN *.py EXCLUDE)
install(FILES README.md CHANGELOG.md NOTICES.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(TARGETS anomalis_usage EXPORT Anomalis)
set_target_properties(anomalis_usage PROPERTIES EXPORT_NAME usage)
foreach(room IN LISTS packaged_rooms)
  set_target_properties(anomalis_${room} PROPERTIES EXPORT_NAME ${room})
  install(TARGETS anomalis_${room} EXPORT Anomalis ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/anomalis)
  install(DIRECTORY src/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/anomalis
    FILES_MATCHING PATTERN *.h PATTERN qt EXCLUDE)
endforeach()
install(EXPORT Anomalis NAMESPACE Anomalis:: DESTINATION ${package_folder} FILE AnomalisTargets.cmake)
configure_package_config_file(cmake/AnomalisConfig.cmake.in AnomalisConfig.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(AnomalisConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/AnomalisConfig.cmake ${PROJECT_BINARY_DIR}/AnomalisConfigVersion.cmake
  DESTINATION ${package_folder})
