# zq_version_resource(<target>): what Windows tells of a file of the kit, and for programs the manifest: paths of more than
# 260 characters. Nothing elsewhere.
function(zq_version_resource target)
  if(NOT WIN32)
    return()
  endif()
  get_target_property(kind ${target} TYPE)
  set(type VFT_DLL)
  set(manifest "")
  if(kind STREQUAL "EXECUTABLE")
    set(type VFT_APP)
    set(manifest "1 24 \"${PROJECT_SOURCE_DIR}/cmake/program.manifest\"")
  endif()
  file(READ "${PROJECT_SOURCE_DIR}/cmake/version.rc.in" template)
  string(CONFIGURE "${template}" template @ONLY)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  file(GENERATE OUTPUT "${source}" CONTENT "${template}")
  # On its own: the resource compiler takes none of the options of the others.
  add_library(${target}_resource OBJECT "${source}")
  set_source_files_properties("${source}" PROPERTIES
    OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/cmake/program.manifest")
  target_sources(${target} PRIVATE "$<TARGET_OBJECTS:${target}_resource>")
endfunction()
