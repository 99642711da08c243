# The Flatpak MANIFEST is one that flatpak-builder takes without a warning, and what it renames and starts is what
# `cmake --install` of BUILD lays out under STAGE.
cmake_policy(VERSION 3.25)
file(READ ${MANIFEST} manifest)
string(JSON id GET "${manifest}" app-id)
string(JSON command GET "${manifest}" command)
string(JSON entry GET "${manifest}" rename-desktop-file)
string(JSON icon GET "${manifest}" rename-icon)

find_program(builder flatpak-builder)
if(builder)
    file(MAKE_DIRECTORY ${STAGE})
    execute_process(COMMAND ${builder} --show-manifest ${MANIFEST} WORKING_DIRECTORY ${STAGE}
        RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE said)
    if(NOT result EQUAL 0 OR said)
        message(FATAL_ERROR "flatpak-builder does not take the manifest: ${said}")
    endif()
else()
    message(STATUS "Not checked, as flatpak-builder is not installed: the properties of the manifest")
endif()

file(REMOVE_RECURSE ${STAGE})
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env DESTDIR=${STAGE} ${CMAKE_COMMAND} --install ${BUILD} --prefix /app
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
# Of what a desktop is given only names that begin with the application's leave the sandbox.
foreach(file IN ITEMS bin/${command} share/applications/${entry} share/icons/hicolor/scalable/apps/${icon}.svg
        share/icons/hicolor/symbolic/apps/${icon}-symbolic.svg share/metainfo/${id}.metainfo.xml
        share/mime/packages/${id}.xml share/icons/hicolor/scalable/mimetypes/${id}.preset.svg)
    if(NOT EXISTS ${STAGE}/app/${file})
        message(FATAL_ERROR "/app/${file}, which the manifest needs, is not installed")
    endif()
endforeach()
file(READ ${STAGE}/app/share/applications/${entry} text)
if(NOT text MATCHES "\nIcon=${icon}\n" OR NOT text MATCHES "\nExec=${command}( |\n)")
    message(FATAL_ERROR "the menu's entry names another icon or command than the manifest")
endif()

# What MIDI, sound and the window need.
string(JSON count LENGTH "${manifest}" finish-args)
set(given "")
math(EXPR last "${count} - 1")
foreach(index RANGE ${last})
    string(JSON argument GET "${manifest}" finish-args ${index})
    list(APPEND given ${argument})
endforeach()
foreach(needed IN ITEMS --socket=wayland --socket=fallback-x11 --share=ipc --socket=pulseaudio --device=all)
    if(NOT needed IN_LIST given)
        message(FATAL_ERROR "the manifest does not give ${needed}")
    endif()
endforeach()
