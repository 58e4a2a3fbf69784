# Warnings, visibility and instrumentation that every target takes, and the two precompiled headers.

add_library(velcoran_build_options INTERFACE)
target_compile_options(velcoran_build_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wundef
    -fvisibility=hidden -fvisibility-inlines-hidden)
target_compile_definitions(velcoran_build_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

# Hardened as Debian builds, whoever builds: hosts load the library into a process that holds a day's work.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "VELCORAN_HAS${flag}" has_flag)
    check_cxx_compiler_flag("-Werror ${flag}" ${has_flag})
    if(${has_flag})
        target_compile_options(velcoran_build_options INTERFACE ${flag})
    endif()
endforeach()
target_compile_options(velcoran_build_options INTERFACE -Wformat -Werror=format-security)
target_link_options(velcoran_build_options INTERFACE LINKER:-z,relro LINKER:-z,now)
if(NOT VELCORAN_SANITIZE)
    # The checks need the optimiser; a definition of the environment's own gives way.
    target_compile_options(velcoran_build_options INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
endif()

if(CMAKE_UNITY_BUILD)
    # Sources that are compiled as one look like headers to a warning about what only one source may see.
    target_compile_options(velcoran_build_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
if(VELCORAN_FUZZERS)
    target_compile_options(velcoran_build_options INTERFACE -fsanitize=fuzzer-no-link,address -fno-omit-frame-pointer)
    target_link_options(velcoran_build_options INTERFACE -fsanitize=address)
endif()
if(VELCORAN_SANITIZE)
    # Qt's headers compare empty lists through null pointers of length 0.
    target_compile_options(velcoran_build_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize=nonnull-attribute -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velcoran_build_options INTERFACE -fsanitize=address,undefined)
endif()
if(VELCORAN_COVERAGE)
    target_compile_options(velcoran_build_options INTERFACE --coverage)
    target_link_options(velcoran_build_options INTERFACE --coverage)
endif()

add_library(velcoran_pch_core STATIC ${CMAKE_CURRENT_LIST_DIR}/pch.cpp)
target_link_libraries(velcoran_pch_core PUBLIC Qt6::Core Qt6::Gui PRIVATE velcoran_build_options)
target_precompile_headers(velcoran_pch_core PRIVATE ${CMAKE_CURRENT_LIST_DIR}/pch_core.h)

add_library(velcoran_pch_widgets STATIC ${CMAKE_CURRENT_LIST_DIR}/pch.cpp)
target_link_libraries(velcoran_pch_widgets PUBLIC Qt6::Widgets PRIVATE velcoran_build_options)
target_precompile_headers(velcoran_pch_widgets PRIVATE ${CMAKE_CURRENT_LIST_DIR}/pch_widgets.h)

# Generated sources alone, for static analysis without a build.
add_custom_target(velcoran_generated)
