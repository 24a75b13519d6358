#include "tests/support/scripted_host.hpp"

#include "host_link/host_keys.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace velm {
namespace {

struct SectionText {
    std::string_view banner;
    std::string_view announcement;
};

constexpr SectionText sections[] = {
    {"Model Parameterization", "System Information is being Exported"},
    {"Segment Information", "Segment Information is being Exported"},
    {"Flow Path Information", "Flow Paths are being Exported"},
    {"Flow Time Series", "Flows are being Exported"},
    {"Segment Dispersion/Exhange", "Dispersive Exchanges are being Exported"},
    {"Boundary Information", ""},
    {"Load Information", "Loadings are being Exported"},
    {"Time Functions", "Time Functions are being Exported"},
    {"Segment Parameters", "Parameter Values are being Exported"},
    {"Constants", "Constants are being Exported"},
    {"Initial Conditions", "Initial concentrations are being Exported"},
};

/// The values of an answer: words, and texts with their opening quote.
std::vector<std::string> words_of(std::string_view line)
{
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ' ') {
            continue;
        }
        const bool quoted = line[i] == '"' || line[i] == '\'';
        const std::size_t end = std::min(line.find(quoted ? line[i] : ' ', i + 1), line.size());
        words.emplace_back(line.substr(i, end - i));
        i = end;
    }
    return words;
}

std::string unescaped(std::string_view text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(i, 2) == "\\0") {
            bytes += '\0';
            ++i;
        } else if (text.substr(i, 2) == "\\x") {
            bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 2, 2)), nullptr, 16));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

void fill_text(char* field, std::size_t length, std::string_view word)
{
    const std::string text = unescaped(word.substr(1)).substr(0, length);
    std::copy(text.begin(), text.end(), field);
    if (word[0] == '"') {
        std::fill(field + text.size(), field + length, ' ');
    }
}

void fill(Kind kind, void* value, std::size_t length, const std::string& word)
{
    if (word == "-") {
        return;
    }
    if (kind == Kind::integer) {
        *static_cast<std::int32_t*>(value) = std::stoi(word);
    } else if (kind == Kind::real) {
        *static_cast<float*>(value) = std::stof(word);
    } else if (kind == Kind::text) {
        fill_text(static_cast<char*>(value), length, word);
    } else {
        std::istringstream numbers(word);
        std::string number;
        for (auto* entry = static_cast<float*>(value); std::getline(numbers, number, ','); ++entry) {
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
    script_["GFILENAME()"].in_turn = {{"\"" + path}};
    std::istringstream lines{std::string(script)};
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.find_first_not_of(' '));
        const std::size_t equals = line.find(" = ");
        if (line.empty()) {
            continue;
        }
        if (equals == std::string::npos) {
            throw std::invalid_argument("no answer in the script's line: " + line);
        }
        Answers& answers = script_[line.substr(0, equals)];
        answers.in_turn.assign(1, {});
        for (const std::string& word : words_of(std::string_view(line).substr(equals + 3))) {
            if (word == "/") {
                answers.in_turn.emplace_back();
            } else {
                answers.in_turn.back().push_back(word);
            }
        }
    }
}

const ScriptedHost::Answer* ScriptedHost::next_answer(const std::string& request)
{
    auto found = script_.find(request);
    for (std::string shorter = request; found == script_.end();) {
        const std::size_t last_value = shorter.rfind(',');
        if (last_value != std::string::npos) {
            found = script_.find(shorter.replace(last_value, std::string::npos, 1, ')'));
        } else if (const std::size_t values = shorter.find('('); values != std::string::npos) {
            shorter.resize(values);
            found = script_.find(shorter);
        } else {
            return nullptr;
        }
    }
    Answers& answers = found->second;
    return &answers.in_turn[std::min(answers.given++, answers.in_turn.size() - 1)];
}

void ScriptedHost::serve(const velm_host_request& request)
{
    if (request.key_position == velm_unknown_key) {
        requests.emplace_back("a key that the host does not have");
        fragments_before.push_back(fragments.size());
        return;
    }
    const HostKey& key = host_keys[request.key_position];
    if (key.name == "PINFOHTML") {
        fragments.emplace_back(static_cast<const char*>(request.values[0]),
                               static_cast<std::size_t>(request.text_lengths[0]));
        if (on_request) {
            on_request(fragments.back().c_str());
        }
        return;
    }
    std::string name = std::string(key.name) + '(';
    std::string lengths = ") " + std::to_string(request.key_length);
    std::size_t texts = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        if (key.arguments[i].direction == Direction::in) {
            name.append(name.back() == '(' ? "" : ",");
            name += std::to_string(*static_cast<std::int32_t*>(request.values[i]));
        } else if (key.arguments[i].kind == Kind::text) {
            lengths += ' ' + std::to_string(request.text_lengths[texts++]);
        }
    }
    requests.push_back(name + lengths);
    fragments_before.push_back(fragments.size());
    if (on_request) {
        on_request(requests.back());
    }

    const Answer* answer = next_answer(name + ')');
    std::size_t given = 0;
    texts = 0;
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Argument& argument = key.arguments[i];
        if (argument.direction == Direction::out) {
            const auto length =
                static_cast<std::size_t>(argument.kind == Kind::text ? request.text_lengths[texts++] : 0);
            fill(argument.kind, request.values[i], length,
                 answer == nullptr ? unanswered(argument.kind) : answer->at(given++));
        } else if (spoils_indices && argument.meaning != "ISC number") {
            *static_cast<std::int32_t*>(request.values[i]) = -77;
        }
    }
}

std::string ScriptedHost::requests_after(std::string_view announcement) const
{
    std::string lines;
    for (std::size_t i = 0; i < requests.size(); ++i) {
        const std::size_t before = fragments_before[i];
        if (before != 0 && fragments[before - 1].c_str() == std::string(announcement) + "</span></li>") {
            lines += requests[i] + '\n';
        }
    }
    return lines;
}

std::string ScriptedHost::panel() const
{
    std::string html;
    for (const std::string& fragment : fragments) {
        html += fragment.c_str();
    }
    return html;
}

std::string shown(std::string_view bytes)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size();) {
        const char c = bytes[i];
        const std::size_t run = std::min(bytes.find_first_not_of(c, i), bytes.size()) - i;
        char code[8];
        if (c == '\r' && bytes.substr(i, 2) == "\r\n") {
            text += "$\n";
            i += 2;
        } else if (c == '\0') {
            text += run == 1 ? "{NUL}" : '{' + std::to_string(run) + " NUL}";
            i += run;
        } else if (c == ' ' && run >= 16) {
            text += '{' + std::to_string(run) + " blanks}";
            i += run;
        } else if (static_cast<signed char>(c) < ' ' || c == '\x7f') {
            (void)std::snprintf(code, sizeof code, "{%02X}", static_cast<unsigned char>(c));
            text += code;
            ++i;
        } else {
            text += c;
            ++i;
        }
    }
    return text;
}

std::string one_a_line(std::string_view requests)
{
    std::string lines;
    std::istringstream words{std::string(requests)};
    for (std::string word; words >> word;) {
        const bool request = word[0] == 'G' || word[0] == 'P';
        lines += (lines.empty() ? "" : request ? "\n" : " ") + word;
    }
    return lines + '\n';
}

std::string records_of_section(std::string_view file, std::size_t number)
{
    auto banner_at = [&](std::size_t section) {
        const std::string banner = " ======================== " + std::string(sections[section - 1].banner) + " ====";
        return section == 1 ? 0 : file.find(banner);
    };
    const std::size_t start = banner_at(number);
    const std::size_t end = number == std::size(sections) ? file.size() : banner_at(number + 1);
    if (start > file.size() || end > file.size()) {
        return "the section's banner is missing";
    }
    const std::size_t first = number == 1 ? 0 : file.find("\r\n", start) + 2;
    return shown(file.substr(first, end - first));
}

std::string_view announcement_of_section(std::size_t number)
{
    return sections[number - 1].announcement;
}

} // namespace velm
