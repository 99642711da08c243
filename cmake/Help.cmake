# The manual beside the program.
#
# kivora_help(<program>): copies resources/help to "Help" in the program's folder whenever the program is built, and has
# the program draw the pictures of its panel into it. The pictures are left out of builds that do not run here or whose
# runs leave traces: cross-compiled and instrumented ones.
function(kivora_help program)
    set(source_dir ${CMAKE_SOURCE_DIR}/resources/help)
    set(help_dir ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/Help)
    set(copies "")
    foreach(file IN ITEMS style.css en/index.html ru/index.html)
        add_custom_command(OUTPUT ${help_dir}/${file}
            COMMAND ${CMAKE_COMMAND} -E copy ${source_dir}/${file} ${help_dir}/${file}
            DEPENDS ${source_dir}/${file}
            VERBATIM)
        list(APPEND copies ${help_dir}/${file})
    endforeach()
    add_custom_target(${program}_help DEPENDS ${copies})
    add_dependencies(${program} ${program}_help)
    if(CMAKE_CROSSCOMPILING OR KIVORA_SANITIZE OR KIVORA_COVERAGE)
        return()
    endif()
    add_custom_command(TARGET ${program} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DFOLDER=${help_dir}
            -P ${CMAKE_SOURCE_DIR}/cmake/HelpPictures.cmake
        COMMENT "Drawing the manual's pictures"
        VERBATIM)
endfunction()
