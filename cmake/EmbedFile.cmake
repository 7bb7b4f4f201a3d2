# zq_embed_file(<target> <name> <file>): puts the file's bytes into the target as
#   namespace ZQAPI::embedded { extern const std::string_view <name>; }
function(zq_embed_file target name file)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  file(READ "${file}" bytes HEX)
  string(REGEX REPLACE "(..)" "\\\\x\\1" bytes "${bytes}")
  # One literal per 8 bytes, so that no line gets long.
  string(REGEX REPLACE "((....)(....)?(....)?(....)?(....)?(....)?(....)?(....)?)" "    \"\\1\"\n" bytes "${bytes}")
  get_filename_component(title "${file}" NAME)
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "// ${title}, byte for byte.
#include <string_view>

namespace ZQAPI::embedded {

static const char ${name}Bytes[] =
${bytes};
extern const std::string_view ${name};
const std::string_view ${name}(${name}Bytes, sizeof ${name}Bytes - 1);

}  // namespace ZQAPI::embedded
")
  target_sources(${target} PRIVATE "${source}")
endfunction()
