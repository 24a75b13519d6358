#include "session/model_of_session.hpp"

#include "headless_host/model_answers.hpp"
#include "headless_host/request.hpp"
#include "session/line_text.hpp"
#include "session/model_builder.hpp"
#include "session/real_text.hpp"
#include "session/request_words.hpp"
#include "session/session_reader.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <span>
#include <string_view>

namespace velm {
namespace {

bool belongs_to_a_model(std::int32_t key)
{
    return key != "GFILENAME"_key && key != "PPROGRESS"_key;
}

std::string place(const SessionReader& session, const RecordedExchange& exchange)
{
    return session.file().string() + ", line " + std::to_string(exchange.line) + ", exchange " +
           std::to_string(exchange.number) + ": " + request_words(exchange);
}

/// Calls `use` with each exchange of one export that has to do with its model.
void for_each_exchange(SessionReader& session, std::uint64_t export_number,
                       const std::function<void(const RecordedExchange&)>& use)
{
    std::uint64_t exports = 0;
    bool completed = false;
    while (const RecordedExchange* const exchange = session.next()) {
        exports += exchange->key_position == "GFILENAME"_key ? 1 : 0;
        if (exports > export_number) {
            break;
        }
        if (exports == export_number && exchange->key_position == "PINFOHTML"_key) {
            completed = is_completion_message(exchange->values[0].text);
        } else if (exports == export_number && belongs_to_a_model(exchange->key_position)) {
            use(*exchange);
        }
    }
    if (exports < export_number) {
        throw std::out_of_range(session.file().string() + " has no export " + std::to_string(export_number) +
                                ", only " + std::to_string(exports));
    }
    if (!completed) {
        throw NoModel(session.file().string() + " holds export " + std::to_string(export_number) +
                      " not to its completion, so that parts of its model are missing; record it again");
    }
}

Model collect_answers(const std::filesystem::path& file, std::uint64_t export_number)
{
    SessionReader session(file);
    ModelBuilder builder;
    for_each_exchange(session, export_number, [&](const RecordedExchange& exchange) {
        try {
            builder.take(exchange);
        } catch (const Misplaced& error) {
            throw NoModel(place(session, exchange) + ": " + error.what());
        }
    });
    return builder.finish();
}

/// The plug-in's side of a request: values in memory of their own.
class Asker {
public:
    explicit Asker(const Model& model) : answers_(model) {}

    /// What the model answers to the request of `exchange`; it holds until the next call. Throws Unanswerable.
    const RecordedValues& ask(const RecordedExchange& exchange)
    {
        const HostKey& key = exchange.key();
        velm_host_request request{key.name.data(),
                                  key.length(),
                                  exchange.key_position,
                                  static_cast<std::int32_t>(key.argument_count),
                                  {},
                                  {}};
        std::ranges::copy(exchange.text_lengths, request.text_lengths);
        for (std::size_t i = 0; i < key.argument_count; ++i) {
            request.values[i] = room_for(key.arguments[i], exchange.values[i], values_[i]);
        }
        answers_.answer(Request(request));
        return values_;
    }

private:
    static void* room_for(const Argument& argument, const RecordedValue& recorded, RecordedValue& value)
    {
        switch (argument.kind) {
        case Kind::integer: value.integer = recorded.integer; return &value.integer;
        case Kind::real: return &value.real;
        case Kind::text: value.text = recorded.text; return value.text.data();
        case Kind::series: value.series.resize(Request::series_entries); return value.series.data();
        }
        return nullptr;
    }

    ModelAnswers answers_;
    RecordedValues values_;
};

/// True when the plug-in does the same for both answers.
bool has_same_effect(std::int32_t key, std::int32_t one, std::int32_t other)
{
    switch (key) {
    case "GTFISUSED"_key: return (one == 1) == (other == 1);
    case "GPARAMISUSED"_key:
    case "GCONSTISUSED"_key: return (one >= 1) == (other >= 1);
    // counts that stand nowhere in the file; no time function is taken for one
    case "GNUMTIMEFUNC"_key: return std::max(one, 1) == std::max(other, 1);
    case "GNUMTFTYPE"_key:
    case "GNUMPARAMTYPE"_key:
    case "GNUMPARAMBYISC"_key:
    case "GNUMCONST"_key:
    case "GNUMCONSTBYISC"_key: return std::max(one, 0) == std::max(other, 0);
    default: return one == other;
    }
}

/// Zero is shown without a sign.
bool is_same_real(float one, float other)
{
    return one == other || std::bit_cast<std::uint32_t>(one) == std::bit_cast<std::uint32_t>(other);
}

/// Beside its paths a flow function's description stands whole, at its series only the beginning.
bool is_same_text(std::int32_t key, std::string_view one, std::string_view other)
{
    constexpr std::size_t beginning = 30;
    return key == "GFLOWFUNCDESC"_key ? one.substr(0, beginning) == other.substr(0, beginning) : one == other;
}

bool is_same_value(std::int32_t key, Kind kind, const RecordedValue& recorded, const RecordedValue& of_model)
{
    switch (kind) {
    case Kind::integer: return has_same_effect(key, recorded.integer, of_model.integer);
    case Kind::real: return is_same_real(recorded.real, of_model.real);
    case Kind::text: return is_same_text(key, recorded.text, of_model.text);
    case Kind::series:
        return std::ranges::equal(recorded.series, std::span(of_model.series).first(recorded.series.size()),
                                  is_same_real);
    }
    return false;
}

std::string value_words(Kind kind, const RecordedValue& value)
{
    std::array<char, real_room> real{};
    switch (kind) {
    case Kind::integer: return std::to_string(value.integer);
    case Kind::real: return {real.data(), put_real(real.data(), value.real)};
    case Kind::text: return text_as_json(value.text);
    case Kind::series: return "another series";
    }
    return {};
}

void compare(const SessionReader& session, const RecordedExchange& exchange, Asker& asker)
{
    const HostKey& key = exchange.key();
    const RecordedValues* answers = nullptr;
    try {
        answers = &asker.ask(exchange);
    } catch (const Unanswerable& error) {
        throw NoModel(place(session, exchange) +
                      " was answered, but no model of the session's other answers can: " + error.what());
    }
    for (std::size_t i = 0; i < key.argument_count; ++i) {
        const Argument& argument = key.arguments[i];
        if (argument.direction == Direction::out &&
            !is_same_value(exchange.key_position, argument.kind, exchange.values[i], (*answers)[i])) {
            throw NoModel(place(session, exchange) + ": the " + std::string(argument.meaning) + " was answered with " +
                          value_words(argument.kind, exchange.values[i]) +
                          ", a model of the session's other answers has " + value_words(argument.kind, (*answers)[i]));
        }
    }
}

} // namespace

Model model_of_session(const std::filesystem::path& session, std::uint64_t export_number)
{
    Model model = collect_answers(session, export_number);
    SessionReader again(session);
    Asker asker(model);
    for_each_exchange(again, export_number, [&](const RecordedExchange& exchange) { compare(again, exchange, asker); });
    return model;
}

} // namespace velm
