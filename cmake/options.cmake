# What all our targets are compiled with: warnings are errors, and the chosen sanitizers.
add_library(zrdraw_options INTERFACE)
target_compile_options(zrdraw_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
  # g++ 12 sees overlaps in std::string's operator+ that are none (GCC bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(ZRDRAW_SANITIZE)
  add_compile_options(-fsanitize=${ZRDRAW_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=${ZRDRAW_SANITIZE})
  # What the sanitizers insert makes g++ 12 lose sight of what std::regex initialises.
  target_compile_options(zrdraw_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# What the library's exact arithmetic rests on: 32-bit sums wrap, products are not fused, and AVX
# is the baseline.
add_library(zrdraw_arithmetic INTERFACE)
target_compile_options(zrdraw_arithmetic INTERFACE -mavx -fwrapv -ffp-contract=off)
