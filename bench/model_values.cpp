#include "bench/model_values.hpp"

#include <cmath>

namespace velm::bench {

float ModelValues::draw(Quantity quantity)
{
    const double least = std::log(quantity.least);
    const double position = static_cast<double>(random_()) / 4294967296.0;
    return static_cast<float>(std::exp(least + position * (std::log(quantity.most) - least)));
}

} // namespace velm::bench
