#pragma once

#include "model/model.hpp"

#include <string_view>

namespace velm::bench {

/// From now on the five call forms of this library answer from `model`, which must outlive the exports, and name
/// `output_file` (at most 512 characters, copied). What neither holds is left as the caller has set it. Callers are
/// trusted: an unknown key or an index beyond its table has no defined answer.
__attribute__((visibility("default"))) void serve(const Model& model, std::string_view output_file);

} // namespace velm::bench
