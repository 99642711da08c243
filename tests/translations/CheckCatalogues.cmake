# Updates a copy of the catalogues in FOLDER from SOURCES and compares: cmake -DLUPDATE=... -DSOURCES=... -DFOLDER=...
# -DWORK=<scratch folder> -P CheckCatalogues.cmake

# lupdate passes over a text whose context is not spelled out beside it.
file(GLOB_RECURSE sources ${SOURCES}/*.cpp ${SOURCES}/*.h)
foreach(source IN LISTS sources)
    file(READ ${source} text)
    if(text MATCHES "[Tt]ranslate\\([A-Za-z_:]+,[ \n]*\"[^\"]*\"")
        message(FATAL_ERROR "${source}: the context is no literal: ${CMAKE_MATCH_0}")
    endif()
endforeach()

file(REMOVE_RECURSE ${WORK})
file(GLOB catalogues ${FOLDER}/*.ts)
file(COPY ${catalogues} DESTINATION ${WORK})
execute_process(
    COMMAND ${CMAKE_COMMAND} -DLUPDATE=${LUPDATE} -DSOURCES=${SOURCES} -DFOLDER=${WORK}
        -P ${CMAKE_CURRENT_LIST_DIR}/../../resources/translations/Update.cmake
    COMMAND_ERROR_IS_FATAL ANY)
foreach(catalogue IN LISTS catalogues)
    get_filename_component(name ${catalogue} NAME)
    file(READ ${catalogue} committed)
    file(READ ${WORK}/${name} updated)
    if(NOT committed STREQUAL updated)
        message(FATAL_ERROR "${name} is out of date: run the target update_translations, then translate what is new")
    endif()
    string(REGEX MATCHALL "<translation type=[^\n]*|<translation></translation>|<numerusform></numerusform>"
        open "${committed}")
    list(LENGTH open count)
    if(count GREATER 0)
        message(FATAL_ERROR "${name}: ${count} texts are not translated")
    endif()
endforeach()
