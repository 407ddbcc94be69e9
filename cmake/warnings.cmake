# SPDX-License-Identifier: MIT
# One interface target that every target of the project links: warnings as errors, and arithmetic
# that gives the same bits wherever an expression stands (no contraction into fused multiply-add).
add_library(velmora_options INTERFACE)
target_compile_options(velmora_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Werror -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # g++ takes the vector types of a function that is cloned per processor for an ABI question.
  # And g++ 12 sees overlaps in std::string operations and unset values in std::variant that are none
  # (GCC bugs 105651, 105562); clang and the sanitizers watch for the real ones.
  target_compile_options(velmora_options INTERFACE
    -Wno-psabi -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(VELMORA_SANITIZE)
  target_compile_options(velmora_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(velmora_options INTERFACE -fsanitize=address,undefined)
  target_compile_definitions(velmora_options INTERFACE VELMORA_SANITIZE=1)
endif()
if(VELMORA_FUZZ)
  # Coverage of the libraries too: without it a fuzzer sees nothing but its own harness.
  target_compile_options(velmora_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
