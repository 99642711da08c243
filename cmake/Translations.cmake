# The catalogues of the user interface's languages, and Qt's own.
#
# kivora_translations(<out> <folder>): from <folder>/kivora_<locale>.ts the build makes kivora_<locale>.qm; Qt's texts
# come from the installed Qt as qt_<language>.qm. Their paths go to <out>. The target update_translations brings the
# sources up to date with the texts of the program.
function(kivora_translations out folder)
    set(qm_dir ${CMAKE_CURRENT_BINARY_DIR}/translations)
    file(MAKE_DIRECTORY ${qm_dir})
    get_target_property(qmake Qt6::qmake IMPORTED_LOCATION)
    execute_process(COMMAND ${qmake} -query QT_INSTALL_TRANSLATIONS
        OUTPUT_VARIABLE qt_dir OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(catalogues "")
    foreach(locale IN ITEMS en_US ru_RU)
        set(source ${folder}/kivora_${locale}.ts)
        set(catalogue ${qm_dir}/kivora_${locale}.qm)
        add_custom_command(OUTPUT ${catalogue}
            COMMAND Qt6::lrelease -silent ${source} -qm ${catalogue}
            DEPENDS ${source}
            COMMENT "Compiling the catalogue ${locale}"
            VERBATIM)
        string(SUBSTRING ${locale} 0 2 language)
        if(NOT EXISTS ${qt_dir}/qtbase_${language}.qm)
            message(FATAL_ERROR "Qt's catalogue ${qt_dir}/qtbase_${language}.qm is missing")
        endif()
        configure_file(${qt_dir}/qtbase_${language}.qm ${qm_dir}/qt_${language}.qm COPYONLY)
        list(APPEND catalogues ${catalogue} ${qm_dir}/qt_${language}.qm)
    endforeach()
    add_custom_target(update_translations
        COMMAND ${CMAKE_COMMAND} -DLUPDATE=$<TARGET_FILE:Qt6::lupdate> -DSOURCES=${CMAKE_SOURCE_DIR}/src
            -DFOLDER=${folder} -P ${folder}/Update.cmake
        VERBATIM)
    set(${out} ${catalogues} PARENT_SCOPE)
endfunction()
