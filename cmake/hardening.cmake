# SPDX-License-Identifier: MIT
# What makes a fault in a reader an end with a message and not a way in: checked buffers and stacks,
# programs at an address that nobody knows, and tables of addresses that are read-only from the start.
# None of it changes a result. tests/checks/hardening.sh looks at what was built. The sanitizers check
# more, and do not go with all of it.
if(VELMORA_SANITIZE)
  return()
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

# Checked library calls need an optimiser.
target_compile_options(velmora_options INTERFACE -fstack-protector-strong
  $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  target_compile_options(velmora_options INTERFACE -fstack-clash-protection -fcf-protection)
endif()
target_link_options(velmora_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
