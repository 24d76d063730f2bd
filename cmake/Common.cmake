# What holds for every target: the language, where headers are found, the warnings, the sanitizers.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Link this to a target of ours to have the house's warnings, all of them errors.
add_library(warnings INTERFACE)
target_compile_options(warnings INTERFACE -Wall -Wextra -Wpedantic -Wformat=2 -Werror -Werror=switch)

if(TV_SANITIZE)
    # With the sanitizers' code between, gcc takes variants and optionals for uninitialised.
    target_compile_options(warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    add_compile_options(-fsanitize=${TV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TV_SANITIZE})
endif()
