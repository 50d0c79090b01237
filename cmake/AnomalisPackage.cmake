# `cpack --preset package`: the packages of Debian, one for each component of what is installed. What they need is read
# from the files by dpkg-shlibdeps; here stands what is loaded by its name alone.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME anomalis)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_CONTACT "Anomalis maintainers <maintainers@anomalis.invalid>")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL programs development python)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# The summary is another one for each package.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(about "A survey line over a buried body sees its magnetic field and its attraction.
Anomalis lays simple bodies under the line (sheets, prisms, pipes, wires),
shows at once what they would give, fits them, and tells how sure the answer
is.

")
# PROJ is loaded when a coordinate system is first spoken of.
set(coordinates "libproj25, proj-data")

set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME anomalis)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "magnetic and gravity anomalies along a survey profile
${about}This package has the workbench, the tool for the command line, examples and
the guide.")
# The plugins of Qt that read and write drawings, and that read the guide; a font that the charts have on any machine;
# what the pages of the guide run in a browser.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS
  "${coordinates}, libqt6svg6, libqt6sql6-sqlite, fonts-dejavu-core, hicolor-icon-theme, libjs-sphinxdoc")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS "qt6-wayland, shared-mime-info, desktop-file-utils")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS "python3-anomalis, libanomalis-dev, slurm-client")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libanomalis-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "magnetic and gravity anomalies: libraries for C++
${about}This package has all but the window as static libraries, with their headers
and find_package(anomalis) for CMake.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${coordinates}, libeigen3-dev, libemf-dev, libsqlite3-dev, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS cmake)

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-anomalis)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "magnetic and gravity anomalies: module for Python
${about}This package has forward models, fits, searches and tables of surveys on
numpy arrays.")
if(ANOMALIS_PYTHON)
  find_package(Python REQUIRED COMPONENTS Interpreter)
  math(EXPR next_minor "${Python_VERSION_MINOR} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "${coordinates}, python3-numpy, \
python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), python3 (<< ${Python_VERSION_MAJOR}.${next_minor})")
else()
  list(REMOVE_ITEM CPACK_COMPONENTS_ALL python)
endif()

# What Debian asks of a package besides its files is done to the files that are about to be packed.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish.cmake)
set(CPACK_ANOMALIS_SOURCE ${PROJECT_SOURCE_DIR})
include(CPack)
