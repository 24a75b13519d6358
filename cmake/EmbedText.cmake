# embed_text(TARGET FILE VARIABLE)
#
# Compiles the bytes of FILE into TARGET. A source of TARGET reads them as
#
#     extern const std::string_view VARIABLE;      (namespace velm)
#
# The bytes become an array, not a literal: compilers bound the length of a literal.
function(embed_text target file variable)
    cmake_path(ABSOLUTE_PATH file)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    file(READ ${file} digits HEX)
    string(REGEX REPLACE "(..)" "'\\\\x\\1'," bytes "${digits}")
    set(source ${CMAKE_CURRENT_BINARY_DIR}/${variable}.cpp)
    file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [[
#include <string_view>
namespace velm {
namespace {
constexpr char bytes[] = {@bytes@};
}
extern const std::string_view @variable@;
const std::string_view @variable@{bytes, sizeof bytes};
} // namespace velm
]])
    target_sources(${target} PRIVATE ${source})
endfunction()
