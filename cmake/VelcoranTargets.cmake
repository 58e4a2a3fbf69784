# Every folder is a target of its own. Its public headers are linked into an include root that belongs to the target alone,
# so an include of a layer that no target on the way links cannot compile; its private headers stand in the root of its
# tests alone. `tools/check_layers.py` reads what is recorded here and asks for the rest: that each include is linked directly.

# velcoran_header_root(<root> <folder> <header> ...)
function(velcoran_header_root root folder)
    file(MAKE_DIRECTORY ${root}/${folder})
    foreach(header ${ARGN})
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${folder}/${header} SYMBOLIC)
    endforeach()
endfunction()

# velcoran_check_headers(<name> <folder> <link> <header> ...)
#   a part of the target `headers`: each header compiles alone, with what the linked target hands out and nothing else.
add_custom_target(headers)
function(velcoran_check_headers name folder link)
    foreach(header ${ARGN})
        set(source ${CMAKE_BINARY_DIR}/headers/${name}/${header}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${folder}/${header}\"\n" @ONLY)
        list(APPEND sources ${source})
    endforeach()
    if(sources)
        add_library(${name} OBJECT EXCLUDE_FROM_ALL ${sources})
        set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
        target_compile_options(${name} PRIVATE -O0 -U_FORTIFY_SOURCE)
        target_link_libraries(${name} PRIVATE ${link} velcoran_build_options)
        add_dependencies(headers ${name})
    endif()
endfunction()

# velcoran_layer(<folder> HEADERS ... PRIVATE_HEADERS ... SOURCES ... LINKS ... PRIVATE_LINKS ... [MOC] [WIDGETS])
#   target velcoran_<folder with _ for />, a static library; its public headers are included as "<folder>/<header>".
#   HEADERS are for whoever links the target, PRIVATE_HEADERS for the folder and, through <target>_inside, its tests.
#   LINKS are what the public headers need, PRIVATE_LINKS the rest.
#   MOC runs the meta-object compiler, WIDGETS takes the precompiled header with the widget classes.
function(velcoran_layer folder)
    cmake_parse_arguments(LAYER "MOC;WIDGETS" "" "HEADERS;PRIVATE_HEADERS;SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    string(REPLACE "/" "_" name ${folder})
    set(target velcoran_${name})
    set(root ${CMAKE_BINARY_DIR}/layers/${name})
    file(REMOVE_RECURSE ${root} ${root}_inside)
    velcoran_header_root(${root} ${folder} ${LAYER_HEADERS})
    velcoran_header_root(${root}_inside ${folder} ${LAYER_HEADERS} ${LAYER_PRIVATE_HEADERS})
    add_library(${target} STATIC ${LAYER_SOURCES} ${LAYER_HEADERS} ${LAYER_PRIVATE_HEADERS})
    target_include_directories(${target} PUBLIC ${root})
    target_link_libraries(${target} PUBLIC ${LAYER_LINKS} PRIVATE velcoran_build_options ${LAYER_PRIVATE_LINKS})
    set_property(GLOBAL APPEND PROPERTY VELCORAN_LAYERS ${target})
    set_target_properties(${target} PROPERTIES
        VELCORAN_LAYER ${folder} VELCORAN_HEADERS "${LAYER_HEADERS}" VELCORAN_PRIVATE_HEADERS "${LAYER_PRIVATE_HEADERS}")
    add_library(${target}_inside INTERFACE)
    target_include_directories(${target}_inside INTERFACE ${root}_inside)
    target_link_libraries(${target}_inside INTERFACE ${target} ${LAYER_PRIVATE_LINKS})
    velcoran_check_headers(${target}_headers ${folder} ${target} ${LAYER_HEADERS})
    velcoran_check_headers(${target}_private_headers ${folder} ${target}_inside ${LAYER_PRIVATE_HEADERS})
    if(LAYER_MOC)
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
        add_dependencies(velcoran_generated ${target}_autogen)
    endif()
    if(LAYER_WIDGETS)
        target_precompile_headers(${target} REUSE_FROM velcoran_pch_widgets)
        target_link_libraries(${target} PUBLIC Qt6::Widgets)
    elseif(NOT LAYER_MOC)
        target_precompile_headers(${target} REUSE_FROM velcoran_pch_core)
        target_link_libraries(${target} PUBLIC Qt6::Core Qt6::Gui)
    endif()
endfunction()

# velcoran_record_layers(): layers.txt in the build folder, five lines a layer, for tools/check_layers.py: its folder, its
# public and its private headers, its links, and those that it hands on.
function(velcoran_record_layers)
    get_property(targets GLOBAL PROPERTY VELCORAN_LAYERS)
    foreach(target ${targets})
        foreach(property VELCORAN_LAYER VELCORAN_HEADERS VELCORAN_PRIVATE_HEADERS LINK_LIBRARIES INTERFACE_LINK_LIBRARIES)
            get_target_property(value ${target} ${property})
            string(APPEND record "${value}\n")
        endforeach()
    endforeach()
    file(WRITE ${CMAKE_BINARY_DIR}/layers.txt "${record}")
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
