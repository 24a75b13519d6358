#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Which text a host must have given so that an export writes a field's bytes. A host serves a text filled up with
/// blanks; what an export does with it before it writes it differs from field to field.
namespace velm {

/// A field that is written as the host filled it, or its beginning: the text without the blanks after it.
[[nodiscard]] std::string text_as_served(std::string_view field);

/// A field after whose text an export puts one NUL where there is room: a system's or a segment's name. Nothing for
/// bytes that no export writes.
///
///     "Mouth", NUL, blanks    "Mouth"
///     "Mouth", NULs to the end    all but the last NUL: a host that fills with NULs
///     "Mouth", blanks    nothing
[[nodiscard]] std::optional<std::string> text_before_nul(std::string_view field);

/// The same for a field of which only the beginning is written. Any bytes can stand there: where the end of the text
/// and the NUL are not among them, something lies beyond them, and a point takes its place.
[[nodiscard]] std::string text_before_nul_or_cut(std::string_view beginning);

/// Whether two texts differ in NULs, the blanks in their place and those at their ends alone: an editor drops them.
[[nodiscard]] bool are_same_but_for_nuls(std::string_view one, std::string_view other);

/// Bytes in ISO 8859-1 for a message.
[[nodiscard]] std::string in_quotes(std::string_view bytes);

} // namespace velm
