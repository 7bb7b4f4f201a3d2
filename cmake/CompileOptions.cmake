set(ZQ_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
if(ZQ_SANITIZE)
  add_compile_options(-fsanitize=${ZQ_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  # The check of virtual tables reads memory through a pipe: without free descriptors it takes every object for a wrong one.
  add_compile_options(-fno-sanitize=vptr)
  add_link_options(-fsanitize=${ZQ_SANITIZE})
endif()

# Off by default: whoever builds a release with a newer compiler gets its new warnings as warnings.
option(ZQ_WARNINGS_AS_ERRORS "Warnings are errors, as the project's own presets have it" OFF)

# One set of compiler options for everything this project compiles itself. GCC and Clang take one set; MSVC, and Clang
# where it takes the command line of MSVC, the other.
add_library(zq_options INTERFACE)
target_compile_features(zq_options INTERFACE cxx_std_20)
if(MSVC)
  target_compile_options(zq_options INTERFACE
    /W4 /permissive- /utf-8 /EHsc /Zc:__cplusplus /Zc:preprocessor /guard:cf
    $<$<BOOL:${ZQ_WARNINGS_AS_ERRORS}>:/WX>)
  target_compile_definitions(zq_options INTERFACE _CRT_SECURE_NO_WARNINGS)
  target_link_options(zq_options INTERFACE /guard:cf)
else()
  target_compile_options(zq_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2 $<$<BOOL:${ZQ_WARNINGS_AS_ERRORS}>:-Werror>
    # Exception locations name files as they lie in the source tree, on whatever machine they were built.
    "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
  # Where a dozen sources are compiled as one, each is taken for a header that was included.
  set(together "$<AND:$<BOOL:${CMAKE_UNITY_BUILD}>,$<COMPILE_LANG_AND_ID:CXX,GNU>>")
  target_compile_options(zq_options INTERFACE "$<${together}:-Wno-subobject-linkage>")

  # Hardening: what is read from cameras, files and other libraries may be anything. The test "hardening" reads the headers
  # of what is shipped. Checked copies need an optimised build, and keep the sanitizers from seeing the calls themselves.
  target_compile_options(zq_options INTERFACE -fstack-protector-strong)
  if(NOT ZQ_SANITIZE)
    set(optimised "$<NOT:$<OR:$<CONFIG:Debug>,$<BOOL:$<TARGET_PROPERTY:ZQ_FAST_BUILD>>>>")
    target_compile_options(zq_options INTERFACE "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  endif()
  # What is built to be run once (tests): unoptimised, which takes half the time.
  target_compile_options(zq_options INTERFACE "$<$<BOOL:$<TARGET_PROPERTY:ZQ_FAST_BUILD>>:-O0;-g1>")
  if(WIN32)
    # Named to the linker too, for the library of the checks.
    target_link_options(zq_options INTERFACE -fstack-protector-strong -Wl,--nxcompat,--dynamicbase,--high-entropy-va)
  else()
    target_compile_options(zq_options INTERFACE -fstack-clash-protection)
    target_link_options(zq_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
    include(CheckPIESupported)
    check_pie_supported(LANGUAGES C CXX)
  endif()
endif()

if(WIN32)
  # C99 formatting, and the narrow system functions of Windows 7 and later.
  target_compile_definitions(zq_options INTERFACE
    __USE_MINGW_ANSI_STDIO=1 WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601)
  # The run-time goes into each program and library: they depend on system DLLs alone.
  if(MSVC)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  else()
    target_link_options(zq_options INTERFACE -static)
  endif()
endif()

# Everything tells libFuzzer which way it took; see tests/fuzz.
option(ZQ_FUZZ "Build the fuzz targets with libFuzzer (Clang) instead of the replay of their corpora" OFF)
if(ZQ_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
