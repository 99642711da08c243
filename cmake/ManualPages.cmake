# The manual pages, one a language: packaging/kivora.1.in and packaging/kivora.ru.1.in with the options as `--help` tells
# them in that language, so that both say the same.
#
# kivora_manual_pages(<program>): makes <language>/kivora.1 in the binary folder whenever the program is built. They are left
# out of builds that do not run here or whose runs leave traces: cross-compiled and instrumented ones.
function(kivora_manual_pages program)
    if(CMAKE_CROSSCOMPILING OR KIVORA_SANITIZE OR KIVORA_COVERAGE)
        return()
    endif()
    set(pages "")
    foreach(language IN ITEMS en:en_US:kivora.1.in ru:ru_RU:kivora.ru.1.in)
        string(REPLACE ":" ";" parts ${language})
        list(GET parts 0 folder)
        list(GET parts 1 locale)
        list(GET parts 2 template)
        set(page ${CMAKE_CURRENT_BINARY_DIR}/${folder}/kivora.1)
        add_custom_command(OUTPUT ${page}
            COMMAND ${CMAKE_COMMAND} -E env XDG_DATA_HOME=${CMAKE_CURRENT_BINARY_DIR}/data LC_ALL=C.UTF-8
                ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:${program}> -DLOCALE=${locale}
                -DTEMPLATE=${CMAKE_CURRENT_SOURCE_DIR}/${template} -DPAGE=${page}
                -P ${CMAKE_SOURCE_DIR}/cmake/ManualPage.cmake
            DEPENDS ${program} ${template} ${CMAKE_SOURCE_DIR}/cmake/ManualPage.cmake
            COMMENT "Writing the manual page (${folder})"
            VERBATIM)
        list(APPEND pages ${page})
    endforeach()
    add_custom_target(${program}_manual_pages ALL DEPENDS ${pages})
endfunction()
