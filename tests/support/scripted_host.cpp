#include "tests/support/scripted_host.hpp"

#include "host_link/host_keys.hpp"

#include <algorithm>
#include <sstream>

namespace velm {
namespace {

/// The values of an answer: words, and texts with their opening quote.
std::vector<std::string> words_of(std::string_view line)
{
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] != ' ') {
            const bool quoted = line[i] == '"' || line[i] == '\'';
            const std::size_t end = std::min(line.find(quoted ? line[i] : ' ', i + 1), line.size());
            words.emplace_back(line.substr(i, end - i));
            i = end;
        }
    }
    return words;
}

void fill_text(char* field, std::size_t length, std::string_view word)
{
    char* const end = field + length;
    for (std::size_t i = 1; i < word.size() && field != end; ++i, ++field) {
        *field = word[i];
        if (word.substr(i, 2) == "\\0") {
            *field = '\0';
            ++i;
        } else if (word.substr(i, 2) == "\\x") {
            *field = static_cast<char>(std::stoi(std::string(word.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        }
    }
    std::fill(field, word[0] == '"' ? end : field, ' ');
}

void fill(Kind kind, void* value, std::size_t length, const std::string& word)
{
    if (word == "-") {
        return;
    }
    if (kind == Kind::integer) {
        *static_cast<std::int32_t*>(value) = std::stoi(word);
    } else if (kind == Kind::text) {
        fill_text(static_cast<char*>(value), length, word);
    } else {
        std::istringstream numbers(word);
        auto* entry = static_cast<float*>(value);
        for (std::string number; std::getline(numbers, number, ','); ++entry) {
            *entry = std::stof(number);
        }
    }
}

const char* unanswered(Kind kind)
{
    return kind == Kind::text ? "\"" : kind == Kind::series ? "-" : "0";
}

} // namespace

ScriptedHost::ScriptedHost(std::string_view script, const std::string& path)
{
    script_["GFILENAME()"].in_turn = {{'"' + path}};
    std::string lines(script);
    for (std::size_t at = 0; (at = lines.find("; ", at)) != std::string::npos;) {
        lines.replace(at, 2, 1, '\n');
    }
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) {
        const std::vector<std::string> words = words_of(line);
        if (words.size() > 2) { // the request, "=", values
            Answers& answers = script_[words[0]];
            answers.in_turn.assign(1, {});
            for (std::size_t i = 2; i < words.size(); ++i) {
                if (words[i] == "/") {
                    answers.in_turn.emplace_back();
                } else {
                    answers.in_turn.back().push_back(words[i]);
                }
            }
        }
    }
}

const ScriptedHost::Answer* ScriptedHost::next_answer(std::string request)
{
    auto found = script_.find(request);
    while (found == script_.end() && request.back() == ')') {
        const std::size_t last_value = request.rfind(',');
        request.resize(last_value == std::string::npos ? request.find('(') : last_value);
        request += last_value == std::string::npos ? "" : ")";
        found = script_.find(request);
    }
    if (found == script_.end()) {
        return nullptr;
    }
    Answers& answers = found->second;
    return &answers.in_turn[std::min(answers.given++, answers.in_turn.size() - 1)];
}

void ScriptedHost::serve(const velm_host_request& request)
{
    if (request.key_position == velm_unknown_key) {
        requests.emplace_back("a key that the host does not have");
        return;
    }
    const HostKey& key = host_keys[request.key_position];
    if (key.name == "PINFOHTML") {
        fragments.emplace_back(static_cast<const char*>(request.values[0]),
                               static_cast<std::size_t>(request.text_lengths[0]));
        if (on_request) {
            on_request(fragments.back().substr(0, fragments.back().find('\0')));
        }
        return;
    }
    std::string name = std::string(key.name) + '(';
    std::string lengths = std::to_string(request.key_length);
    std::size_t texts = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::in) {
            name.append(name.back() == '(' ? "" : ",");
            name.append(std::to_string(*static_cast<std::int32_t*>(request.values[i])));
        } else if (key.arguments[i].kind == Kind::text) {
            lengths += ' ' + std::to_string(request.text_lengths[texts++]);
        }
    }
    name += ')';
    requests.push_back(name + ' ' + lengths);
    fragments_before.push_back(fragments.size());
    if (on_request) {
        on_request(requests.back());
    }

    const Answer* answer = next_answer(name);
    std::size_t given = 0;
    texts = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Kind kind = key.arguments[i].kind;
        if (key.arguments[i].direction == Direction::out) {
            const auto room = static_cast<std::size_t>(kind == Kind::text ? request.text_lengths[texts++] : 0);
            fill(kind, request.values[i], room, answer == nullptr ? unanswered(kind) : answer->at(given++));
        }
    }
}

} // namespace velm
