# Warnings are errors everywhere; floating-point contraction is off so that every build computes the same numbers.
add_library(kivora_warnings INTERFACE)
target_compile_options(kivora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wnull-dereference -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough
    -Werror -ffp-contract=off -fno-math-errno)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kivora_warnings INTERFACE -Wlogical-op -Wduplicated-cond)
    if(KIVORA_SANITIZE)
        # The instrumented code defeats GCC's flow analysis for these two.
        target_compile_options(kivora_warnings INTERFACE -Wno-null-dereference -Wno-maybe-uninitialized)
    endif()
endif()
if(KIVORA_THREAD_SAFETY_ANALYSIS)
    target_compile_options(kivora_warnings INTERFACE -Wthread-safety -Wthread-safety-beta)
endif()
