# Debian packages, by cpack -G DEB: one for each component of the installation. scripts/package, which calls it, puts the
# papers of each into build/<preset>/papers first.
set(ZQ_MAINTAINER "ZQDeviceAPI maintainers <maintainers@zqdeviceapi.example>" CACHE STRING
  "Who the packages name as their maintainer")
set(debian "${PROJECT_SOURCE_DIR}/packaging/debian")
set(made "${PROJECT_BINARY_DIR}/papers")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev tools python)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_COMPRESSION_TYPE none)  # scripts/package packs them again
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each has its own
set(CPACK_DEBIAN_PACKAGE_NAME zqdeviceapi)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ZQ_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(same_version "libzqdeviceapi2 (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

execute_process(COMMAND date --utc -R -r "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${made}/changelog.Debian" "zqdeviceapi (${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; \
urgency=medium\n\n  * What has changed stands in CHANGELOG.md of libzqdeviceapi-dev.\n\n -- ${ZQ_MAINTAINER}  ${date}\n")
execute_process(COMMAND gzip -9nf changelog.Debian WORKING_DIRECTORY "${made}" COMMAND_ERROR_IS_FATAL ANY)

# zq_debian_package(<component> <package> <section> <depends> <brief description> <description>...)
function(zq_debian_package component package section depends brief)
  string(TOUPPER "${component}" name)
  list(JOIN ARGN "\n" description)
  # What CPack reads stands in the outermost scope.
  macro(zq_set what)
    set("CPACK_${what}" "${ARGN}" PARENT_SCOPE)
  endmacro()
  zq_set("DEBIAN_${name}_PACKAGE_NAME" "${package}")
  zq_set("DEBIAN_${name}_PACKAGE_SECTION" "${section}")
  zq_set("DEBIAN_${name}_PACKAGE_DEPENDS" "${depends}")
  zq_set("COMPONENT_${name}_DESCRIPTION" "${brief}\n${description}")
  set(doc "share/doc/${package}")
  install(FILES "${made}/${package}.copyright" DESTINATION "${doc}" RENAME copyright COMPONENT ${component})
  install(FILES "${made}/changelog.Debian.gz" DESTINATION "${doc}" COMPONENT ${component})
endfunction()

set(about "ZQDeviceAPI finds the cameras that are attached to a machine and" "keeps a list of them.")
zq_debian_package(runtime libzqdeviceapi2 libs "passwd" "device-management library of a camera software kit"
  ${about} "This is the library with its command modules, the types of" "cameras that it knows, and the machine-wide configuration, which members"
  "of the group zqsdk edit.")
zq_debian_package(dev libzqdeviceapi-dev libdevel "${same_version}"
  "device-management library of a camera software kit - development"
  ${about} "These are the headers, the files for CMake" "and pkg-config, the binding for C#, examples and the reference of the" "interface.")
zq_debian_package(tools zqdeviceapi-tools utils "${same_version}" "find and edit camera devices from the command line"
  ${about} "These are zqdev, which scans and edits" "the list, and zqcamsim, which plays cameras.")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${debian}/runtime/postinst" "${debian}/runtime/postrm" "${debian}/runtime/triggers" "${made}/shlibs")
file(WRITE "${made}/shlibs" "libZQDeviceAPI 2 libzqdeviceapi2 (>= ${PROJECT_VERSION})\n")
foreach(component IN ITEMS RUNTIME TOOLS)
  set(CPACK_DEBIAN_${component}_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_${component}_DEBUGINFO_PACKAGE ON)
endforeach()
install(DIRECTORY "${debian}/tools/examples" DESTINATION share/doc/zqdeviceapi-tools COMPONENT tools)

# Files of its own language alone.
zq_debian_package(python python3-zqdevice python "python3:any, ${same_version}"
  "device-management library of a camera software kit - Python"
  ${about} "This is the binding for Python 3.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA "${debian}/python/postinst" "${debian}/python/prerm")
include(CPack)
