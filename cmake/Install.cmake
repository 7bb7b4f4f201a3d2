# cmake --install: library, headers, CMake package, pkg-config file, modules, camera configuration and tools.
#
# On Windows the kit lies in bin/, as flat as it is staged. Elsewhere it lies in <libdir>/zqsdk, where the library looks
# for its modules beside itself, and links lead there from <libdir> and bin/.
include(CMakePackageConfigHelpers)

if(WIN32)
  set(kit "${CMAKE_INSTALL_BINDIR}")
else()
  set(kit "${CMAKE_INSTALL_LIBDIR}/zqsdk")
endif()

install(TARGETS ZQDeviceAPI EXPORT ZQDeviceAPITargets
  RUNTIME DESTINATION "${kit}"
  LIBRARY DESTINATION "${kit}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS ZQAPI_headers EXPORT ZQDeviceAPITargets)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/ZQAPI" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(TARGETS zqdev zqcamsim RUNTIME DESTINATION "${kit}")
get_target_property(modules zq_kit_modules MANUALLY_ADDED_DEPENDENCIES)
install(TARGETS ZQLoggerAPI LIBRARY DESTINATION "${kit}" RUNTIME DESTINATION "${kit}")
install(TARGETS ${modules} LIBRARY DESTINATION "${kit}/CCMs" RUNTIME DESTINATION "${kit}/CCMs")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/kit/CameraConfig" DESTINATION "${kit}")

if(NOT WIN32)
  # zq_install_link(<folder> <file of the kit>)
  function(zq_install_link folder file)
    file(RELATIVE_PATH target "${CMAKE_INSTALL_PREFIX}/${folder}" "${CMAKE_INSTALL_PREFIX}/${kit}/${file}")
    install(CODE "
      set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}\")
      file(MAKE_DIRECTORY \"\${folder}\")
      file(CREATE_LINK \"${target}\" \"\${folder}/${file}\" SYMBOLIC)
      message(STATUS \"Linking: \${folder}/${file}\")")
  endfunction()
  zq_install_link("${CMAKE_INSTALL_LIBDIR}" libZQDeviceAPI.so)
  zq_install_link("${CMAKE_INSTALL_LIBDIR}" libZQDeviceAPI.so.2)
  zq_install_link("${CMAKE_INSTALL_BINDIR}" zqdev)
  zq_install_link("${CMAKE_INSTALL_BINDIR}" zqcamsim)
endif()

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/ZQDeviceAPI")
install(EXPORT ZQDeviceAPITargets NAMESPACE ZQAPI:: DESTINATION "${package}")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/ZQDeviceAPIConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfig.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZQDeviceAPIConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfig.cmake" "${PROJECT_BINARY_DIR}/ZQDeviceAPIConfigVersion.cmake"
  DESTINATION "${package}")

configure_file("${PROJECT_SOURCE_DIR}/cmake/ZQDeviceAPI.pc.in" "${PROJECT_BINARY_DIR}/ZQDeviceAPI.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ZQDeviceAPI.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
