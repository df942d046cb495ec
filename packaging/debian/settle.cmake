# Run by cpack on the files of the packages before it packs them: compressed where Debian wants it, and all of one time.
foreach(component ${CPACK_COMPONENTS_ALL})
    set(doc ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
    file(GLOB pages ${doc}/man/man1/*.1 ${doc}/doc/*/changelog ${doc}/doc/*/NEWS)
    if(pages)
        execute_process(COMMAND gzip -9nf ${pages} COMMAND_ERROR_IS_FATAL ANY)
    endif()
endforeach()
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d @$ENV{SOURCE_DATE_EPOCH} {} +
        COMMAND_ERROR_IS_FATAL ANY)
endif()
