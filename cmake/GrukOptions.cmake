# What every target of Gruk is built with. Link `gruk_options`.
add_library(gruk_options INTERFACE)
target_compile_features(gruk_options INTERFACE cxx_std_20)
target_include_directories(gruk_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(gruk_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wold-style-cast -Woverloaded-virtual
    -Wnon-virtual-dtor -Werror
    # A name that one file has for itself may well be a parameter in a file joined to it.
    $<$<NOT:$<BOOL:${GRUK_JOINED_SOURCES}>>:-Wshadow>
    # The same figures on every compiler: a*b+c is two roundings everywhere.
    -ffp-contract=off)
# -O2: -O3 gains nothing measurable here and costs time to compile.
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlaps in std::string where there are none (GCC bug 105329).
    target_compile_options(gruk_options INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(gruk_options INTERFACE -Wthread-safety)
endif()
# Hardening in release builds; a debug build has the full checks of the library instead, and a
# sanitizer sees more without the hardened copies of the calls that it watches.
if(NOT GRUK_SANITIZE)
    target_compile_options(gruk_options INTERFACE
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
            -fstack-protector-strong>)
endif()
target_compile_definitions(gruk_options INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo>:_GLIBCXX_ASSERTIONS>
    $<$<CONFIG:Debug>:_GLIBCXX_DEBUG_PEDANTIC;_GLIBCXX_ASSERTIONS>)

if(GRUK_SANITIZE)
    target_compile_options(gruk_options INTERFACE
        -fsanitize=${GRUK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(gruk_options INTERFACE -fsanitize=${GRUK_SANITIZE})
    # Not every compiler says by itself that it sanitizes; tests ask for fewer rounds then.
    target_compile_definitions(gruk_options INTERFACE GRUK_SANITIZED)
endif()
if(GRUK_COVERAGE)
    target_compile_options(gruk_options INTERFACE --coverage)
    target_link_options(gruk_options INTERFACE --coverage)
endif()
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# Has the headers named parsed once for a test program or what it stands on.
function(gruk_precompile target)
    if(NOT GRUK_PRECOMPILED_HEADERS)
        return()
    endif()
    if(ARGV1 STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} REUSE_FROM ${ARGV2})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()

# Has up to `count` sources of a library compiled as one (0: all of them) where a build is to be
# quick above all. What is in their anonymous namespaces must then have a name of its own within the
# library; and a file that leaves out an include has to fail in the other builds, of users and
# developers.
function(gruk_join target count)
    if(GRUK_JOINED_SOURCES)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${count})
    endif()
endfunction()
