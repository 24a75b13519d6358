#include "session/model_of_session.hpp"

#include "headless_host/headless_host.hpp"
#include "headless_host/model_answers.hpp"
#include "headless_host/request.hpp"
#include "plain_text/plain_text.hpp"
#include "session/model_builder.hpp"
#include "session/session_reader.hpp"

#include <algorithm>
#include <bit>
#include <functional>
#include <string_view>

namespace velm {
namespace {

std::string place(const SessionReader& session, RecordedExchange exchange)
{
    return shown(session.file()) + ", line " + std::to_string(exchange.line) + ", exchange " +
           std::to_string(exchange.number) + ": " + request_in_words(request_of(exchange));
}

/// Calls `use` with each exchange of one export that has to do with its model.
void for_each_exchange(SessionReader& session, std::uint64_t export_number,
                       const std::function<void(const RecordedExchange&)>& use)
{
    bool completed = false;
    (void)session.find_export(export_number);
    for (const RecordedExchange* next = session.next(); next != nullptr && next->key_position != "GFILENAME"_key;
         next = session.next()) {
        if (next->key_position == "PINFOHTML"_key) {
            completed = is_completion_message(next->values[0]);
        } else if (next->key_position != "PPROGRESS"_key) {
            use(*next);
        }
    }
    if (!completed) {
        throw NoModel(shown(session.file()) + " holds export " + std::to_string(export_number) +
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

/// The exchange as it would have been with a host that serves the model. Throws Unanswerable.
RecordedExchange answered_by(const ModelAnswers& model, RecordedExchange exchange)
{
    for (std::size_t i = 0; i < exchange.key().argument_count; ++i) {
        if (exchange.key().arguments[i].kind == Kind::series) {
            exchange.values[i].resize(Request::series_entries * sizeof(float));
        }
    }
    const velm_host_request request = request_of(exchange);
    model.answer(Request(request));
    return exchange;
}

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

bool is_same_value(std::int32_t key, Kind kind, const std::string& recorded, const std::string& of_model)
{
    if (kind == Kind::text) {
        return is_same_text(key, recorded, of_model);
    }
    if (kind == Kind::integer) {
        return has_same_effect(key, number_at<std::int32_t>(recorded), number_at<std::int32_t>(of_model));
    }
    for (std::size_t place = 0; place < recorded.size(); place += sizeof(float)) { // one, or those of a series
        if (!is_same_real(number_at<float>(recorded, place), number_at<float>(of_model, place))) {
            return false;
        }
    }
    return true;
}

std::string value_words(Kind kind, const std::string& value)
{
    return kind == Kind::integer ? std::to_string(number_at<std::int32_t>(value))
           : kind == Kind::real  ? real_text(number_at<float>(value))
           : kind == Kind::text  ? quoted_text(value)
                                 : "another series";
}

void compare(const SessionReader& session, const RecordedExchange& recorded, const ModelAnswers& model)
{
    RecordedExchange of_model;
    try {
        of_model = answered_by(model, recorded);
    } catch (const Unanswerable& error) {
        throw NoModel(place(session, recorded) +
                      " was answered, but no model of the session's other answers can: " + error.what());
    }
    for (std::size_t i = 0; i < recorded.key().argument_count; ++i) {
        const Argument& argument = recorded.key().arguments[i];
        if (argument.direction == Direction::out &&
            !is_same_value(recorded.key_position, argument.kind, recorded.values[i], of_model.values[i])) {
            throw NoModel(place(session, recorded) + ": the " + std::string(argument.meaning) + " was answered with " +
                          value_words(argument.kind, recorded.values[i]) +
                          ", a model of the session's other answers has " +
                          value_words(argument.kind, of_model.values[i]));
        }
    }
}

} // namespace

Model model_of_session(const std::filesystem::path& session, std::uint64_t export_number)
{
    Model model = collect_answers(session, export_number);
    SessionReader again(session);
    const ModelAnswers answers(model);
    for_each_exchange(again, export_number,
                      [&](const RecordedExchange& exchange) { compare(again, exchange, answers); });
    return model;
}

} // namespace velm
