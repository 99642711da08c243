# Warnings are errors everywhere; floating-point contraction is off so that every build computes the same numbers.
add_library(kivora_warnings INTERFACE)
target_compile_options(kivora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough
    -Werror -ffp-contract=off -fno-math-errno)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(kivora_warnings INTERFACE -Wlogical-op -Wduplicated-cond)
    # Once it optimises, GCC 12 sees null pointers and overlapping copies inside the standard library's inlined functions.
    target_compile_options(kivora_warnings INTERFACE $<IF:$<CONFIG:Debug>,-Wnull-dereference,-Wno-restrict>)
    if(KIVORA_SANITIZE)
        # The instrumented code defeats GCC's flow analysis.
        target_compile_options(kivora_warnings INTERFACE -Wno-maybe-uninitialized)
    endif()
endif()
if(KIVORA_THREAD_SAFETY_ANALYSIS)
    target_compile_options(kivora_warnings INTERFACE -Wthread-safety -Wthread-safety-beta)
endif()
