# Brings the catalogues' sources up to date with the texts of the program:
#
#     cmake -DLUPDATE=<lupdate> -DSOURCES=<src> -DFOLDER=<where the .ts files are> -P Update.cmake
#
# New texts come in unfinished and texts that are gone go out. Line numbers are left out, so that a catalogue changes
# only when a text does. English is the source text itself: its catalogue holds the plurals alone. Fails on a text that
# lupdate cannot place.
set(common -extensions cpp,h,ui -recursive ${SOURCES} -locations none -no-obsolete -disable-heuristic sametext
    -disable-heuristic similartext -source-language en_US -no-ui-lines
    -tr-function-alias QT_TRANSLATE_NOOP+=KIVORA_TR_NOOP,QT_TRANSLATE_NOOP3+=KIVORA_TR_NOOP_COMMENT,translate+=Translate)

set(options_en_US -pluralonly)
set(options_ru_RU "")
foreach(locale IN ITEMS en_US ru_RU)
    execute_process(
        COMMAND ${LUPDATE} ${common} ${options_${locale}} -target-language ${locale} -ts ${FOLDER}/kivora_${locale}.ts
        RESULT_VARIABLE result ERROR_VARIABLE complaints OUTPUT_VARIABLE output)
    if(NOT result EQUAL 0 OR complaints)
        message(FATAL_ERROR "lupdate for ${locale}: ${result}\n${output}\n${complaints}")
    endif()
    message(STATUS "${locale}: ${output}")
endforeach()
