# mertu_icon(TARGET): the icon's pictures, compiled into a target that has GTK.

pkg_get_variable(GLIB_COMPILE_RESOURCES gio-2.0 glib_compile_resources)

function(mertu_icon target)
  set(pictures ${PROJECT_SOURCE_DIR}/packaging/icons)
  set(source ${PROJECT_BINARY_DIR}/icon_${target}.cpp)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${GLIB_COMPILE_RESOURCES} --generate-source --manual-register --c-name mertu_icon
            --sourcedir ${pictures} --target ${source} ${pictures}/icon.gresource.xml
    DEPENDS ${pictures}/icon.gresource.xml ${pictures}/16.png ${pictures}/32.png
            ${pictures}/48.png ${pictures}/64.png
    VERBATIM)
  target_sources(${target} PRIVATE ${source})
  # What is generated is not ours to mend.
  set_source_files_properties(${source} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
