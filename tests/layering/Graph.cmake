# Small graphs. The edges of node n stand in the list <prefix>_<n as a C identifier>.

# reaches(<out> <prefix> <from> <to>): whether edges lead from one node to the other. The graph has no cycle.
function(reaches out prefix from to)
    string(MAKE_C_IDENTIFIER ${from} id)
    set(found FALSE)
    if(to IN_LIST ${prefix}_${id})
        set(found TRUE)
    else()
        foreach(next IN LISTS ${prefix}_${id})
            reaches(found ${prefix} ${next} ${to})
            if(found)
                break()
            endif()
        endforeach()
    endif()
    set(${out} ${found} PARENT_SCOPE)
endfunction()
