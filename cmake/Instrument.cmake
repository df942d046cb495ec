# Compiler options that have to be the same for all targets: sanitizers, fuzzer coverage, cacheable precompiled headers.

if(ZELK_SANITIZE)
    list(JOIN ZELK_SANITIZE "," sanitizers)
    add_compile_options(-fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${sanitizers})
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The instrumentation hides from g++ that a variable is set: the warning is false there.
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()

if(ZELK_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "ZELK_FUZZ needs clang++ (use the preset \"fuzz\")")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# ccache can keep a precompiled header only if it does not depend on the time it was made.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
endif()
