# The panel's typefaces, from the system's packages.
#
# kivora_fonts(<out> <file name> ...): finds each file in the system's font folders and puts its path into <out>.
function(kivora_fonts out)
    set(fonts "")
    foreach(name IN LISTS ARGN)
        find_file(KIVORA_FONT_${name} ${name}
            PATHS /usr/share/fonts /usr/local/share/fonts /app/share/fonts
            PATH_SUFFIXES opentype/inter truetype/play truetype/liberation
            NO_DEFAULT_PATH REQUIRED)
        mark_as_advanced(KIVORA_FONT_${name})
        list(APPEND fonts ${KIVORA_FONT_${name}})
    endforeach()
    set(${out} ${fonts} PARENT_SCOPE)
endfunction()
