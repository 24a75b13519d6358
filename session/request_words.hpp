#pragma once

#include "headless_host/prevelmwdll.h"
#include "session/exchange.hpp"

#include <string>
#include <string_view>

namespace velm {

/// A request as people read it: GVOLUME(segment 2), PINFOHTML("<li>..." of length 51).
[[nodiscard]] std::string request_words(const RecordedExchange& exchange);
/// The same of a request to the host; for an unsound one, what is wrong with it.
[[nodiscard]] std::string request_words(const velm_host_request& passed);

/// True of the panel fragment, with or without its NUL, that ends an export that has succeeded.
[[nodiscard]] bool is_completion_message(std::string_view fragment);

} // namespace velm
