#pragma once

#include <system_error>

namespace velm {

/// The system's error numbers in its own words; the C++ library has words for a few only.
[[nodiscard]] const std::error_category& windows_errors();

} // namespace velm
