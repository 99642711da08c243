# Has PROGRAM draw its panel in each language into FOLDER, without a display, a sound system or the user's settings:
# cmake -DPROGRAM=<kivora> -DFOLDER=<Help> -P HelpPictures.cmake
set(work ${FOLDER}/pictures)
file(REMOVE_RECURSE ${work})
foreach(locale IN ITEMS en_US ru_RU)
    string(SUBSTRING ${locale} 0 2 language)
    file(MAKE_DIRECTORY ${work}/${locale})
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env
            QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2 LANG=C.UTF-8 XDG_DATA_HOME=${work}/${locale}
            XDG_RUNTIME_DIR=${work}/${locale} DBUS_SESSION_BUS_ADDRESS=disabled:
            KIVORA_AUDIO_DRIVER=file KIVORA_AUDIO_FILE=${work}/${locale}/sound.wav
            ${PROGRAM} --locale ${locale} --pictures ${FOLDER}/${language}
        TIMEOUT 120 RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result STREQUAL "0")
        message(FATAL_ERROR "${PROGRAM} drew no pictures (${result}): it needs a General MIDI sound font\n${output}")
    endif()
endforeach()
file(REMOVE_RECURSE ${work})
