# Folders of a package can be read by everybody, whatever the mask of who builds it.
file(GLOB_RECURSE entries LIST_DIRECTORIES true "${CPACK_TEMPORARY_DIRECTORY}/*")
foreach(entry ${entries})
    if(IS_DIRECTORY ${entry})
        file(CHMOD ${entry} PERMISSIONS
            OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    endif()
endforeach()
