# Read by cpack before it packs: adds the libraries of what must run to what the package depends on, and those of what may
# be missing, such as the web engine of the guide, to what it recommends.
set(folder ${CPACK_QUORVANE_FOLDER})
file(WRITE ${folder}/debian/control "Source: quorvane\nPackage: quorvane\nArchitecture: any\n") # asked for by the tool
list(TRANSFORM CPACK_QUORVANE_NEEDED PREPEND -e)
list(TRANSFORM CPACK_QUORVANE_OPTIONAL PREPEND -e)
execute_process(
    COMMAND dpkg-shlibdeps -O -dDepends ${CPACK_QUORVANE_NEEDED} -dRecommends ${CPACK_QUORVANE_OPTIONAL}
    WORKING_DIRECTORY ${folder}
    OUTPUT_VARIABLE answer
    COMMAND_ERROR_IS_FATAL ANY)
foreach(kind Depends Recommends)
    if(NOT answer MATCHES "shlibs:${kind}=([^\n]+)")
        message(FATAL_ERROR "dpkg-shlibdeps names nothing for ${kind}: ${answer}")
    endif()
    string(TOUPPER ${kind} variable)
    string(PREPEND CPACK_DEBIAN_PACKAGE_${variable} "${CMAKE_MATCH_1}, ")
endforeach()
