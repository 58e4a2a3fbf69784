# Every folder is a target of its own whose headers are reachable only through it: each listed header is linked into an
# include root that belongs to the target alone, so an include of a layer that the target does not link cannot compile.

# velcoran_layer(<folder> HEADERS ... SOURCES ... LINKS ... PRIVATE_LINKS ... [MOC] [WIDGETS])
#   target velcoran_<folder with _ for />, a static library; headers are included as "<folder>/<header>".
#   MOC runs the meta-object compiler, WIDGETS takes the precompiled header with the widget classes.
function(velcoran_layer folder)
    cmake_parse_arguments(LAYER "MOC;WIDGETS" "" "HEADERS;SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    string(REPLACE "/" "_" name ${folder})
    set(target velcoran_${name})
    set(root ${CMAKE_BINARY_DIR}/layers/${name})
    file(MAKE_DIRECTORY ${root}/${folder})
    foreach(header ${LAYER_HEADERS})
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${folder}/${header} SYMBOLIC)
    endforeach()
    add_library(${target} STATIC ${LAYER_SOURCES} ${LAYER_HEADERS})
    target_include_directories(${target} PUBLIC ${root})
    target_link_libraries(${target} PUBLIC ${LAYER_LINKS} PRIVATE velcoran_build_options ${LAYER_PRIVATE_LINKS})
    set_target_properties(${target} PROPERTIES VELCORAN_LAYER ${folder})
    if(LAYER_MOC)
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
    endif()
    if(LAYER_WIDGETS)
        target_precompile_headers(${target} REUSE_FROM velcoran_pch_widgets)
        target_link_libraries(${target} PUBLIC Qt6::Widgets)
    elseif(NOT LAYER_MOC)
        target_precompile_headers(${target} REUSE_FROM velcoran_pch_core)
        target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui)
    endif()
endfunction()

# velcoran_test(<name> SOURCES ... LINKS ... [WIDGETS] [MOC] [SLOW] [ENVIRONMENT ...])
#   a GoogleTest program, usually one a layer; WIDGETS gives it an application object with windows, SLOW keeps it out of
#   the sanitizer run.
function(velcoran_test name)
    cmake_parse_arguments(TEST "MOC;SLOW;WIDGETS" "" "SOURCES;LINKS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    if(TEST_WIDGETS)
        target_link_libraries(${name} PRIVATE ${TEST_LINKS} velcoran_widget_test_main velcoran_build_options)
        target_precompile_headers(${name} REUSE_FROM velcoran_pch_widgets)
    else()
        target_link_libraries(${name} PRIVATE ${TEST_LINKS} velcoran_test_main velcoran_build_options)
    endif()
    if(TEST_MOC)
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
    endif()
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TZ=UTC;${TEST_ENVIRONMENT}"
        TIMEOUT 600)
    if(TEST_SLOW)
        set_tests_properties(${name} PROPERTIES LABELS slow)
    endif()
endfunction()
