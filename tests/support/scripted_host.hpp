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
/// A line of the script gives a request, without lengths, its answer, or several for the first time and later ones
/// (the last stays). A key with fewer values, or alone, answers for all that it is asked with.
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

    std::function<void(const std::string& request)> on_request; ///< called before the answer
    bool spoils_indices = false; ///< writes into the numbers it is to read, which are copies; not into ISC numbers

    std::vector<std::string> requests;         ///< in order, without the panel's
    std::vector<std::string> fragments;        ///< of the panel, whole, as many bytes as their lengths say
    std::vector<std::size_t> fragments_before; ///< for each request the number of fragments that had come

    /// The requests that came between this announcement and the panel's next fragment, one a line.
    [[nodiscard]] std::string requests_after(std::string_view announcement) const;
    /// All fragments up to their NUL, joined.
    [[nodiscard]] std::string panel() const;

private:
    using Answer = std::vector<std::string>; ///< a value as written in the script for each value to fill

    const Answer* next_answer(const std::string& request);

    struct Answers {
        std::vector<Answer> in_turn;
        std::size_t given = 0;
    };
    std::map<std::string, Answers, std::less<>> script_;
};

/// Bytes of a model input file for people: $ at line ends, {NUL}, {3 NUL}, {E4}, {16 blanks} for that many or more.
std::string shown(std::string_view bytes);

/// Requests as written in a row, several on a line, brought to one a line.
std::string one_a_line(std::string_view requests);

/// The records of section `number` (from 1, in file order) without its banner, as shown.
std::string records_of_section(std::string_view file, std::size_t number);

/// What section `number` announces, without "</span></li>"; empty for the boundaries.
std::string_view announcement_of_section(std::size_t number);

} // namespace velm
