#pragma once

#include "headless_host/prevelmwdll.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// A host that answers as its script says, and writes down what it was asked.
///
/// A request is written with the values that the host reads, then all lengths as they came:
///
///     GSYSNAME(2) 9 30 5        system 2; lengths of key, name and tag
///
/// The script gives requests, without lengths, their answers, one a line or separated by "; ". With several answers
/// the first is given the first time, the last stays. A key with fewer values answers for all that it is asked with.
///
///     GSYSNAME(2) = "Oxygen" 'DO'     a text padded with blanks to its field; one that leaves the rest of it alone
///     GTFISUSED(5,1) = 1 / 0          1 in the first pass, then 0
///     GALLBOUNDFUNC = 0,1.5 2,-3      series; \0 and \xE4 in texts are such bytes; - leaves a value alone
///
/// What is not in the script is answered by zeros and blank texts, the file name by `path`.
class ScriptedHost {
public:
    ScriptedHost(std::string_view script, const std::string& path);

    /// Answers one request; what prevelmwdll hands on.
    void serve(const velm_host_request& request);
    static void answer(void* host, const velm_host_request* request)
    {
        static_cast<ScriptedHost*>(host)->serve(*request);
    }

    std::function<void(const std::string& request)> on_request; ///< called before the answer; for the panel its text

    std::vector<std::string> requests;         ///< in order, without the panel's
    std::vector<std::string> fragments;        ///< of the panel, whole, as many bytes as their lengths say
    std::vector<std::size_t> fragments_before; ///< for each request the number of fragments that had come

private:
    using Answer = std::vector<std::string>; ///< as written in the script, one for each value to fill
    struct Answers {
        std::vector<Answer> in_turn;
        std::size_t given = 0;
    };

    [[nodiscard]] const Answer* next_answer(std::string request);

    std::map<std::string, Answers> script_;
};

} // namespace velm
