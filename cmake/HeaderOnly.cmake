# zq_header_only(<target> <folder>...): the target may include the header-only libraries of these folders (CLI, nlohmann,
# spdlog, fmt), which are taken from the build machine for every system that is built for, and nothing else from there.
function(zq_header_only target)
  foreach(folder IN LISTS ARGN)
    find_path(ZQ_${folder}_PARENT "${folder}" PATHS /usr/local/include /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
      REQUIRED DOC "Folder of the headers ${folder}/")
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/header-only")
    file(CREATE_LINK "${ZQ_${folder}_PARENT}/${folder}" "${PROJECT_BINARY_DIR}/header-only/${folder}" SYMBOLIC)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE "${PROJECT_BINARY_DIR}/header-only")
endfunction()
