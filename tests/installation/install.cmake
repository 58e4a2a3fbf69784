# Installs the build in BUILD under PREFIX, from nothing, and looks at what hosts rely on.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE library ${PREFIX}/lib*/velcoran/1/libvelcoran.so)
file(STRINGS ${PREFIX}/share/velcoran/registry.ini registered REGEX "^Library=")
if(NOT registered STREQUAL "Library=${library}")
    message(FATAL_ERROR "the registration says ${registered}, the library is ${library}")
endif()
execute_process(COMMAND ${PREFIX}/bin/velcoran-host --version COMMAND_ERROR_IS_FATAL ANY)
