#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velm {

/// Calls the form of `values.size()` arguments with exactly the given lengths, as the plug-in does.
void call(const std::string& key_with_nul, const std::vector<void*>& values,
          const std::vector<std::int32_t>& text_lengths = {});

/// Asks for a key with these in-arguments through its call form, and says what came out, argument by argument:
/// "12", "0.5", "'text without its padding'", "[series]", "?" for a value that was left as it was.
/// Fails the test when the host touched an in-argument or a byte beside a value.
std::string ask(const std::string& key, const std::vector<std::int32_t>& in_arguments);

} // namespace velm
