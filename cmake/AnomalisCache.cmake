# A compiler cache serves all clones alike where there is one: it sees paths relative to the project, takes the header
# lists of the compiler instead of preprocessing once more, and knows precompiled headers.
option(ANOMALIS_CCACHE "Compile through ccache where it is installed" ON)
find_program(ANOMALIS_CCACHE_PROGRAM ccache)
find_program(ANOMALIS_ENV_PROGRAM env)
mark_as_advanced(ANOMALIS_CCACHE_PROGRAM ANOMALIS_ENV_PROGRAM)
if(ANOMALIS_CCACHE AND ANOMALIS_CCACHE_PROGRAM AND ANOMALIS_ENV_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ANOMALIS_ENV_PROGRAM} CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros ${ANOMALIS_CCACHE_PROGRAM})
endif()
