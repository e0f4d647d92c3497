# What every target of this build has in common.

# The warnings our own code is held to. Linked privately, so clients never get them.
add_library(norvask_warnings INTERFACE)
target_compile_options(norvask_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${NORVASK_WARNINGS_AS_ERRORS}>:-Werror>)

# Empty unless NORVASK_SANITIZE is on. An instrumented library needs instrumented programs,
# which is why the library hands it on to whatever links it inside this build.
add_library(norvask_sanitizers INTERFACE)
if(NORVASK_SANITIZE STREQUAL "threads")
    target_compile_options(norvask_sanitizers INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(norvask_sanitizers INTERFACE -fsanitize=thread)
elseif(NORVASK_SANITIZE)
    target_compile_options(norvask_sanitizers INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(norvask_sanitizers INTERFACE -fsanitize=address,undefined)
endif()
if(NORVASK_BUILD_FUZZERS)
    # The fuzzer watches which parts of the library an input reaches.
    target_compile_options(norvask_sanitizers INTERFACE -fsanitize=fuzzer-no-link)
endif()

function(norvask_own_target target)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_features(${target} PRIVATE cxx_std_17)
    target_link_libraries(${target} PRIVATE norvask_warnings norvask_sanitizers)
endfunction()
