# What Windows shows of a program and lets it do.
include(${CMAKE_CURRENT_LIST_DIR}/Icons.cmake)

function(zelk_windows_program target description)
    set(ZELK_DESCRIPTION "${description}")
    set(ZELK_MANIFEST ${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest)
    set(resources ${PROJECT_BINARY_DIR}/resources/${target}.rc)
    configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${resources} @ONLY)
    set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${ZELK_MANIFEST};${ZELK_ICON}")
    target_sources(${target} PRIVATE ${resources})
endfunction()
