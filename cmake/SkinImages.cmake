# Makes the skin's images from their SVG sources, at one, two and four device pixels a pixel of the design.
#
# kivora_skin_images(<out> <name> <width> <height> ...): for each triple a source resources/skin/<name>.svg, or the
# element of that id in resources/skin/Defs.svg, becomes <name>.png, <name>@2x.png and <name>@4x.png in the build tree; their
# paths go to <out>. A source is a fragment: it may use everything that Defs.svg defines.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

function(kivora_skin_images out)
    set(source_dir ${CMAKE_SOURCE_DIR}/resources/skin)
    set(image_dir ${CMAKE_CURRENT_BINARY_DIR}/skin)
    file(MAKE_DIRECTORY ${image_dir})
    file(READ ${source_dir}/Defs.svg defs)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source_dir}/Defs.svg)
    set(images "")
    set(rest ${ARGN})
    while(rest)
        list(POP_FRONT rest name width height)
        if(EXISTS ${source_dir}/${name}.svg)
            file(READ ${source_dir}/${name}.svg content)
            set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source_dir}/${name}.svg)
        elseif(defs MATCHES "id=\"${name}\"")
            set(content "<use href=\"#${name}\"/>\n")
        else()
            message(FATAL_ERROR "There is no source for the skin image ${name}")
        endif()
        set(size "width=\"${width}\" height=\"${height}\" viewBox=\"0 0 ${width} ${height}\"")
        file(CONFIGURE OUTPUT ${image_dir}/${name}.svg @ONLY
            CONTENT "<svg xmlns=\"http://www.w3.org/2000/svg\" ${size}>\n${defs}${content}</svg>\n")
        add_custom_command(
            OUTPUT ${image_dir}/${name}.png ${image_dir}/${name}@2x.png ${image_dir}/${name}@4x.png
            COMMAND ${RSVG_CONVERT} -z 1 -o ${image_dir}/${name}.png ${image_dir}/${name}.svg
            COMMAND ${RSVG_CONVERT} -z 2 -o ${image_dir}/${name}@2x.png ${image_dir}/${name}.svg
            COMMAND ${RSVG_CONVERT} -z 4 -o ${image_dir}/${name}@4x.png ${image_dir}/${name}.svg
            DEPENDS ${image_dir}/${name}.svg
            COMMENT "Drawing ${name}"
            VERBATIM)
        list(APPEND images ${image_dir}/${name}.png ${image_dir}/${name}@2x.png ${image_dir}/${name}@4x.png)
    endwhile()
    set(${out} ${images} PARENT_SCOPE)
endfunction()
