# cmake --install: library, headers, CMake package, pkg-config file, modules, camera configuration, tools, documents and
# examples, in components (runtime, dev, tools, python) that are packages of their own where there are packages
# (Package.cmake).
#
# On Windows the kit lies in bin/, as flat as it is staged. Elsewhere it lies in <libdir>/zqsdk, where the library looks
# for its modules beside itself, and links lead there from <libdir> and bin/. What is installed follows its prefix.
include(CMakePackageConfigHelpers)

if(WIN32)
  set(kit "${CMAKE_INSTALL_BINDIR}")
  set(shared "share/zqdeviceapi")
  set(bindings ".")
else()
  set(kit "${CMAKE_INSTALL_LIBDIR}/zqsdk")
  set(shared "${CMAKE_INSTALL_DATADIR}/zqdeviceapi")
  set(bindings "${shared}")
endif()
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME runtime)

install(TARGETS ZQDeviceAPI EXPORT ZQDeviceAPITargets
  RUNTIME DESTINATION "${kit}"
  LIBRARY DESTINATION "${kit}" NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT dev)
install(TARGETS ZQAPI_headers EXPORT ZQDeviceAPITargets)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/ZQAPI" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT dev)
get_target_property(modules zq_kit_modules MANUALLY_ADDED_DEPENDENCIES)
if(ZQ_BUILD_LOGGER)
  list(APPEND modules ZQLoggerAPI)
endif()
foreach(module IN LISTS modules)
  get_target_property(folder ${module} ZQ_KIT_FOLDER)
  install(TARGETS ${module} LIBRARY DESTINATION "${kit}/${folder}" RUNTIME DESTINATION "${kit}/${folder}")
endforeach()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/kit/CameraConfig" DESTINATION "${kit}")
# What a machine-wide configuration begins with.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/kit/AppData/config" DESTINATION "${shared}")

set(tools "")
if(ZQ_BUILD_TOOLS)
  set(tools zqdev zqcamsim)
  install(TARGETS ${tools} RUNTIME DESTINATION "${kit}" COMPONENT tools)
endif()

if(NOT WIN32)
  # zq_install_link(<component> <folder> <file of the kit>)
  function(zq_install_link component folder file)
    file(RELATIVE_PATH target "${CMAKE_INSTALL_PREFIX}/${folder}" "${CMAKE_INSTALL_PREFIX}/${kit}/${file}")
    install(CODE "
      set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}\")
      file(MAKE_DIRECTORY \"\${folder}\")
      file(CREATE_LINK \"${target}\" \"\${folder}/${file}\" SYMBOLIC)
      message(STATUS \"Linking: \${folder}/${file}\")" COMPONENT ${component})
  endfunction()
  zq_install_link(dev "${CMAKE_INSTALL_LIBDIR}" libZQDeviceAPI.so)
  zq_install_link(runtime "${CMAKE_INSTALL_LIBDIR}" libZQDeviceAPI.so.2)
  foreach(tool IN LISTS tools)
    zq_install_link(tools "${CMAKE_INSTALL_BINDIR}" ${tool})
  endforeach()
endif()

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/ZQDeviceAPI")
install(EXPORT ZQDeviceAPITargets NAMESPACE ZQAPI:: DESTINATION "${package}" COMPONENT dev)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ZQDeviceAPIConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfig.cmake" INSTALL_DESTINATION "${package}"
  PATH_VARS CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZQDeviceAPIConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfig.cmake" "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfigVersion.cmake"
  DESTINATION "${package}" COMPONENT dev)

# The way from the pkg-config file to the prefix.
file(RELATIVE_PATH ZQ_PC_PREFIX
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" ZQ_PC_PREFIX "${ZQ_PC_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/ZQDeviceAPI.pc.in" "${PROJECT_BINARY_DIR}/ZQDeviceAPI.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ZQDeviceAPI.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT dev)

install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT dev)
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT dev)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples" DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT dev)

# The bindings for other languages; that for Python as pip takes it, or in a package of Debian's where Python looks.
install(FILES "${PROJECT_SOURCE_DIR}/bindings/csharp/ZQDevice.cs" DESTINATION "${bindings}/csharp" COMPONENT dev)
set(python "${bindings}/python")
if(ZQ_BUILD_PACKAGES)
  set(python lib/python3/dist-packages)
else()
  install(FILES "${PROJECT_SOURCE_DIR}/python/pyproject.toml" "${PROJECT_SOURCE_DIR}/python/README.md"
    DESTINATION "${python}" COMPONENT python)
endif()
install(DIRECTORY "${PROJECT_SOURCE_DIR}/python/zqdevice" DESTINATION "${python}" COMPONENT python
  PATTERN __pycache__ EXCLUDE)
