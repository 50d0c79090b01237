# `cmake --install`: the programs, the examples and the guide where the programs look for them, the module for Python, and
# the rooms without a window as the package anomalis: find_package(anomalis) gives anomalis::core, anomalis::forward and
# so on. Each of the components programs, development and python is a package of its own for Debian.
include(CMakePackageConfigHelpers)

set(packaged_rooms core vector chart transform field intake forward filter model workspace_file inversion edit output
  diagnostics show flow)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/anomalis)

install(TARGETS anomalis-batch)
if(ANOMALIS_WINDOW)
  install(TARGETS anomalis)
  install(TARGETS anomalis-pictures LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/anomalis)
endif()
if(ANOMALIS_PYTHON)
  # Where the interpreter looks below the prefix: python3 -m site tells of its folders.
  set(ANOMALIS_PYTHON_FOLDER lib/python3/dist-packages CACHE STRING "Folder of packages of Python, below the prefix")
  install(TARGETS anomalis_python LIBRARY DESTINATION ${ANOMALIS_PYTHON_FOLDER}/anomalis COMPONENT python)
  install(FILES src/python/__init__.pyi src/python/py.typed DESTINATION ${ANOMALIS_PYTHON_FOLDER}/anomalis
    COMPONENT python)
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
  FILES_MATCHING PATTERN *.axm PATTERN *.dat PATTERN *.csv PATTERN *.toml PATTERN *.py PATTERN package EXCLUDE)
install(DIRECTORY docs/reference/schemas DESTINATION ${CMAKE_INSTALL_DATADIR}/anomalis)
install(FILES README.md CHANGELOG.md NOTICES.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(TARGETS anomalis_usage EXPORT anomalis COMPONENT development)
set_target_properties(anomalis_usage PROPERTIES EXPORT_NAME usage)
foreach(room IN LISTS packaged_rooms)
  set_target_properties(anomalis_${room} PROPERTIES EXPORT_NAME ${room})
  install(TARGETS anomalis_${room} EXPORT anomalis
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/anomalis COMPONENT development)
  install(DIRECTORY src/${room} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/anomalis COMPONENT development
    FILES_MATCHING PATTERN *.h PATTERN qt EXCLUDE)
endforeach()
install(EXPORT anomalis NAMESPACE anomalis:: DESTINATION ${package_folder} FILE anomalis-targets.cmake
  COMPONENT development)
configure_package_config_file(cmake/anomalis-config.cmake.in anomalis-config.cmake INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(anomalis-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/anomalis-config.cmake ${PROJECT_BINARY_DIR}/anomalis-config-version.cmake
  DESTINATION ${package_folder} COMPONENT development)
install(DIRECTORY examples/package/ DESTINATION ${CMAKE_INSTALL_DATADIR}/anomalis/examples/buried_cube
  COMPONENT development)
