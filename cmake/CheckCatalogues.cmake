# cmake -DLUPDATE=… -DSOURCES="folder;folder" -DCATALOGUES=folder -DWORK=folder -P CheckCatalogues.cmake
# Fails when a text of the sources has no German translation, or a catalogue translates what no source says any more.

file(MAKE_DIRECTORY ${WORK})
file(GLOB catalogues ${CATALOGUES}/*.ts)
set(faults "")
foreach(catalogue ${catalogues})
    get_filename_component(name ${catalogue} NAME)
    file(COPY ${catalogue} DESTINATION ${WORK})
    execute_process(COMMAND ${LUPDATE} -silent -locations none ${SOURCES} -ts ${WORK}/${name}
        RESULT_VARIABLE code ERROR_VARIABLE errors)
    if(NOT code EQUAL 0)
        message(FATAL_ERROR "lupdate failed on ${name}: ${errors}")
    endif()
    file(STRINGS ${WORK}/${name} lines REGEX "<source>|type=\"")
    set(source "")
    foreach(line IN LISTS lines)
        if(line MATCHES "<source>(.*)")
            set(source "${CMAKE_MATCH_1}")
        elseif(line MATCHES "type=\"(vanished|obsolete)\"")
            string(APPEND faults "${name}: no source says: ${source}\n")
        elseif(line MATCHES "type=\"unfinished\"" AND NOT name STREQUAL "tessaly_en.ts")
            string(APPEND faults "${name}: not translated: ${source}\n") # the English one only holds other wordings
        endif()
    endforeach()
endforeach()
if(faults)
    message(FATAL_ERROR "${faults}")
endif()
