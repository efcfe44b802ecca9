# Read by cpack before it packs. Without these tools it would make a package that lacks dependencies, and say nothing.
if(CPACK_GENERATOR STREQUAL "DEB")
    foreach(tool IN ITEMS dpkg-shlibdeps file strip)
        find_program(path_of_${tool} ${tool} NO_CACHE)
        if(NOT path_of_${tool})
            message(FATAL_ERROR "The package needs '${tool}', which is not installed. "
                "'scripts/install-packages package' installs what it needs.")
        endif()
    endforeach()
endif()
