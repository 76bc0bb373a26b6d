# Compiler policy of the whole project, in one place.
#
# - Results must not depend on the optimiser: no fast-math, and no contraction
#   of a multiply and an add into one fused operation (-ffp-contract=off).
# - No basic-block SLP vectorisation (-fno-tree-slp-vectorize) with GCC: GCC 12
#   folds a value rounded to float and widened back to double, stored as a
#   pair, into a copy of the unrounded double, which changes results. Loop
#   vectorisation stays on; explicit vector kernels are written by hand.
# - Baseline x86-64 code. Kernels that use newer instruction sets compile them
#   per function (target attributes) and choose them at run time.
# - Only the library's own names are exported: hidden visibility by default.
# - Warnings on everywhere; -Werror with ORVSPX_WERROR (CI turns it on).

option(ORVSPX_WERROR "Treat compiler warnings as errors" OFF)
option(ORVSPX_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(ORVSPX_FP_FLAGS -ffp-contract=off -fno-fast-math)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  list(APPEND ORVSPX_FP_FLAGS -fno-tree-slp-vectorize)
endif()
set(ORVSPX_WARNING_FLAGS -Wall -Wextra)
if(ORVSPX_WERROR)
  list(APPEND ORVSPX_WARNING_FLAGS -Werror)
endif()

if(ORVSPX_SANITIZE)
  set(ORVSPX_SANITIZER_FLAGS -fsanitize=address,undefined -fno-sanitize-recover=all
      -fno-omit-frame-pointer)
  add_compile_options(${ORVSPX_SANITIZER_FLAGS})
  add_link_options(${ORVSPX_SANITIZER_FLAGS})
endif()

# Floating-point rules apply to everything that computes, tests included.
add_compile_options(${ORVSPX_FP_FLAGS})

# Applies the warning policy to one target.
function(orvspx_apply_warnings target)
  target_compile_options(${target} PRIVATE ${ORVSPX_WARNING_FLAGS})
endfunction()
