# Headers that most files of a kind include, compiled once for all rooms of that kind. Each file still includes what it
# uses: the build with clang does without them (CMAKE_DISABLE_PRECOMPILE_HEADERS).
set(anomalis_standard_headers <algorithm> <array> <cmath> <cstdint> <functional> <limits> <memory>
  <optional> <span> <string> <string_view> <utility> <vector>)
set(anomalis_window_headers <QAction> <QApplication> <QBoxLayout> <QComboBox> <QGridLayout> <QKeyEvent> <QLabel>
  <QLineEdit> <QMenu> <QPainter> <QPushButton> <QWidget>)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/headers.cpp CONTENT "// Nothing but the headers.\n")

# anomalis_headers(NAME HEADERS ... DEPENDS ...): a set of precompiled headers, made with the flags of what is named.
function(anomalis_headers name)
  cmake_parse_arguments(SET "" "" "HEADERS;DEPENDS" ${ARGN})
  add_library(anomalis_${name}_headers OBJECT ${PROJECT_BINARY_DIR}/headers.cpp)
  target_link_libraries(anomalis_${name}_headers PRIVATE ${SET_DEPENDS})
  target_precompile_headers(anomalis_${name}_headers PRIVATE ${SET_HEADERS})
endfunction()

# anomalis_use_headers(TARGET NAME): compiles the files of TARGET with a set. What g++ 12 takes for overflows in
# std::string, wrongly (GCC bug 105651), it does not keep to itself when the header comes precompiled.
function(anomalis_use_headers target name)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    # ccache follows g++ into precompiled headers only with -fpch-preprocess.
    target_compile_options(${target} PRIVATE -fpch-preprocess -Wno-array-bounds -Wno-stringop-overflow
      -Wno-stringop-overread)
  endif()
  target_precompile_headers(${target} REUSE_FROM anomalis_${name}_headers)
endfunction()
