# quorvane_room(NAME SOURCES file... USES library...)
# One folder of the house as a static library that links just what it may use.
function(quorvane_room name)
    cmake_parse_arguments(PARSE_ARGV 1 room "" "" "SOURCES;USES")
    list(TRANSFORM room_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/${name}/)
    add_library(quorvane_${name} STATIC ${room_SOURCES})
    target_link_libraries(quorvane_${name} PUBLIC quorvane_flags ${room_USES})
endfunction()
