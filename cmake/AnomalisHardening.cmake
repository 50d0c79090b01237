# What makes a mistake end the program rather than open it. Where code and tables lie is settled for every build; the
# checks that are compiled in belong to optimised ones: debug builds have assertions and sanitizers of their own.
option(ANOMALIS_HARDENED "Protect the programs against what mistakes in them could be used for" ON)
add_library(anomalis_hardening INTERFACE)
if(NOT ANOMALIS_HARDENED)
  return()
endif()

target_link_options(anomalis_hardening INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>
  LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack LINKER:--as-needed)

if(NOT ANOMALIS_SANITIZE AND NOT ANOMALIS_FUZZ)
  # What the modules take serves programs as well, and as fast once it is said that nobody puts functions of his own in
  # place of ours.
  set(checks -fPIC -fno-semantic-interposition
    -D_GLIBCXX_ASSERTIONS -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
    list(APPEND checks -fcf-protection)
  endif()
  # The C library checks only what was optimised, which bodies of tests are not.
  list(APPEND checks $<$<NOT:$<BOOL:$<TARGET_PROPERTY:ANOMALIS_TEST_BODY>>>:-D_FORTIFY_SOURCE=3>)
  target_compile_options(anomalis_hardening INTERFACE "$<$<NOT:$<CONFIG:Debug>>:${checks}>")
endif()
