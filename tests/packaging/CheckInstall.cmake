# Installs BUILD under STAGE as a package would and looks at what came.
file(REMOVE_RECURSE ${STAGE})
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env DESTDIR=${STAGE} ${CMAKE_COMMAND} --install ${BUILD} --prefix /usr
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
foreach(file IN ITEMS
        lib/kivora/kivora "lib/kivora/Presets/Grand Piano.kivoraLXPreset" lib/kivora/Help/style.css
        lib/kivora/Help/en/index.html lib/kivora/Help/ru/index.html
        share/applications/kivora.desktop share/metainfo/example.brennholt.kivora.metainfo.xml share/man/man1/kivora.1
        share/man/ru/man1/kivora.1 share/bash-completion/completions/kivora share/zsh/site-functions/_kivora
        share/fish/vendor_completions.d/kivora.fish share/mime/packages/example.brennholt.kivora.xml
        share/icons/hicolor/scalable/mimetypes/example.brennholt.kivora.preset.svg
        share/icons/hicolor/symbolic/apps/kivora-symbolic.svg
        share/icons/hicolor/scalable/apps/kivora.svg share/icons/hicolor/48x48/apps/kivora.png)
    if(NOT EXISTS ${STAGE}/usr/${file})
        message(FATAL_ERROR "/usr/${file} is not installed")
    endif()
endforeach()
file(READ_SYMLINK ${STAGE}/usr/bin/kivora link)
if(NOT link STREQUAL "../lib/kivora/kivora")
    message(FATAL_ERROR "/usr/bin/kivora leads to ${link}")
endif()
file(GLOB others RELATIVE ${STAGE} ${STAGE}/* ${STAGE}/usr/*)
list(SORT others)
if(NOT others STREQUAL "usr;usr/bin;usr/lib;usr/share")
    message(FATAL_ERROR "installed outside the program's places: ${others}")
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen XDG_DATA_HOME=${STAGE} ${STAGE}/usr/bin/kivora --version
    OUTPUT_VARIABLE version ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
if(NOT version MATCHES "Kivora LX ${VERSION}")
    message(FATAL_ERROR "the installed program calls itself ${version}")
endif()
