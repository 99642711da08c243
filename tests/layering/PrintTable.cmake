# Prints every row of the table of the leaves, a line each: its name, "=" and its entries with ";" between them.
#
#     cmake -DTABLE=<Layers.cmake> -P PrintTable.cmake
cmake_minimum_required(VERSION 3.25)
include(${TABLE})
get_cmake_property(names VARIABLES)
set(printed "")
foreach(name IN LISTS names)
    if(name MATCHES "^KIVORA_")
        string(APPEND printed "${name}=${${name}}\n")
    endif()
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} -E echo_append "${printed}")
