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
else()
  # Overruns of the stack and of the C library's copies end the program. The latter are found by
  # the optimiser.
  add_compile_options(-fstack-protector-strong
    $<$<NOT:$<CONFIG:,Debug>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
endif()
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# Programs are position independent as well; without this the compiler's own default would decide.
include(CheckPIESupported)
check_pie_supported()

# What the library's exact arithmetic rests on: 32-bit sums wrap, products are not fused, and AVX
# is the baseline.
add_library(zrdraw_arithmetic INTERFACE)
target_compile_options(zrdraw_arithmetic INTERFACE -mavx -fwrapv -ffp-contract=off)
