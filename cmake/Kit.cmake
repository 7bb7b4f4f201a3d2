# The staged kit: build/<preset>/kit is laid out as an installation is and runs where it stands.
include(VersionResource)

set(ZQ_KIT_DIR "${PROJECT_BINARY_DIR}/kit")

# zq_stage(<target> [<folder below the kit>]): the target is built straight into the kit, and installed there.
function(zq_stage target)
  set(dir "${ZQ_KIT_DIR}")
  if(ARGC GREATER 1)
    string(APPEND dir "/${ARGV1}")
  endif()
  set_target_properties(${target} PROPERTIES
    ZQ_KIT_FOLDER "${ARGV1}"
    LIBRARY_OUTPUT_DIRECTORY "${dir}"
    RUNTIME_OUTPUT_DIRECTORY "${dir}"
    BUILD_RPATH_USE_ORIGIN ON)
  zq_version_resource(${target})
endfunction()

# zq_add_module(<name> <folder below the kit> SOURCES...): a library that the kit loads at run time. Its file
# name is <name>.dll on Windows and <name>.so elsewhere.
function(zq_add_module name folder)
  add_library(${name} MODULE ${ARGN})
  target_link_libraries(${name} PRIVATE zq_options)
  set_target_properties(${name} PROPERTIES PREFIX "")
  zq_stage(${name} "${folder}")
  add_dependencies(zq_kit_modules ${name})
endfunction()

# All of them, for whoever runs the kit.
add_custom_target(zq_kit_modules)

# Everything in the source tree's kit/ goes into the staged kit as it stands: those files are sealed, every
# byte counts.
file(GLOB_RECURSE ZQ_KIT_FILES CONFIGURE_DEPENDS
  RELATIVE "${PROJECT_SOURCE_DIR}/kit" "${PROJECT_SOURCE_DIR}/kit/*")
set(ZQ_STAGED_FILES "")
foreach(file IN LISTS ZQ_KIT_FILES)
  add_custom_command(
    OUTPUT "${ZQ_KIT_DIR}/${file}"
    COMMAND ${CMAKE_COMMAND} -E copy "${PROJECT_SOURCE_DIR}/kit/${file}" "${ZQ_KIT_DIR}/${file}"
    DEPENDS "${PROJECT_SOURCE_DIR}/kit/${file}"
    VERBATIM)
  list(APPEND ZQ_STAGED_FILES "${ZQ_KIT_DIR}/${file}")
endforeach()
add_custom_target(zq_kit_files ALL DEPENDS ${ZQ_STAGED_FILES})
