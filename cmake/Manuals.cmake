# Manual pages, completion and API reference, made from what they describe: the tools' own command lines and the public
# headers. Installed with the package that they belong to.
find_program(ZQ_DOXYGEN doxygen REQUIRED)
set(manuals "${PROJECT_SOURCE_DIR}/cmake/manuals")
set(made "${PROJECT_BINARY_DIR}/manuals")
file(MAKE_DIRECTORY "${made}")
set(files "")

foreach(tool IN ITEMS zqdev zqcamsim)
  add_custom_command(OUTPUT "${made}/${tool}.1" "${made}/${tool}.bash"
    COMMAND ${tool} --print-manual > "${made}/${tool}.1"
    COMMAND ${CMAKE_COMMAND} -E cat "${manuals}/${tool}.roff" >> "${made}/${tool}.1"
    COMMAND gzip -9nkf "${made}/${tool}.1"
    COMMAND ${tool} --print-completion > "${made}/${tool}.bash"
    DEPENDS ${tool} "${manuals}/${tool}.roff" VERBATIM)
  list(APPEND files "${made}/${tool}.1" "${made}/${tool}.bash")
  install(FILES "${made}/${tool}.1.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT tools)
  install(FILES "${made}/${tool}.bash" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions"
    RENAME ${tool} COMPONENT tools)
endforeach()

set(header "${PROJECT_SOURCE_DIR}/include/ZQAPI/ZQDeviceAPI.h")
add_custom_command(OUTPUT "${made}/ZQDeviceAPI.3"
  COMMAND awk -v "version=${PROJECT_VERSION}" -f "${manuals}/header-to-man.awk" "${header}" > "${made}/ZQDeviceAPI.3"
  COMMAND gzip -9nkf "${made}/ZQDeviceAPI.3"
  DEPENDS "${header}" "${manuals}/header-to-man.awk" VERBATIM)
install(FILES "${made}/ZQDeviceAPI.3.gz" DESTINATION "${CMAKE_INSTALL_MANDIR}/man3" COMPONENT dev)

# Its warnings are errors.
configure_file("${manuals}/Doxyfile.in" "${PROJECT_BINARY_DIR}/Doxyfile" @ONLY)
file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/include/ZQAPI/*.h*")
set(reference "${PROJECT_BINARY_DIR}/doxygen/html")
add_custom_command(OUTPUT "${reference}/index.html"
  COMMAND ${CMAKE_COMMAND} -E rm -rf "${reference}"
  COMMAND "${ZQ_DOXYGEN}" "${PROJECT_BINARY_DIR}/Doxyfile"
  DEPENDS ${headers} "${PROJECT_BINARY_DIR}/Doxyfile" "${manuals}/doxygen.sed" VERBATIM)
install(DIRECTORY "${reference}" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT dev)

add_custom_target(zq_manuals ALL DEPENDS ${files} "${made}/ZQDeviceAPI.3" "${reference}/index.html")
