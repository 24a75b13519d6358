#pragma once

#include "headless_host/request.hpp"
#include "model/model.hpp"

#include <cstdint>
#include <tuple>
#include <unordered_map>

namespace velm {

/// What a model says to each host key that fetches from it.
class ModelAnswers {
public:
    /// `model` must outlive this and not change.
    explicit ModelAnswers(const Model& model);

    /// Fills the request's values. Throws Unanswerable, with the value that lacks an answer as it was.
    void answer(const Request& request) const;

private:
    template <class Instance>
    using TypesByIsc = std::unordered_map<std::int32_t, const InstanceType<Instance>*>;

    struct Step;

    const Model& model_;
    std::tuple<TypesByIsc<TimeFunction>, TypesByIsc<Parameter>, TypesByIsc<Constant>> types_;
};

} // namespace velm
