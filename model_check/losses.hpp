#pragma once

#include "input_file/input_file.hpp"
#include "model/model.hpp"
#include "model_check/datum_value.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velm {

/// A value whose text in the file is not it.
struct Loss {
    Address address;
    float value = 0;
    std::string text;    ///< without blanks around it
    double relative = 0; ///< distance of the text from the value, in parts of the value

    /// "4e-05 is written 0.0000, off by 100 %"; of times "off by 0.0375 days", of fractions "off by 0.00333".
    [[nodiscard]] std::string in_words() const;
    /// What to do about a time or a fraction; empty for others.
    [[nodiscard]] std::string remedy() const;
};

/// Losses of like weight.
struct LossList {
    std::uint64_t count = 0;
    std::vector<Loss> worst; ///< worst first, up to a limit
};

/// A text that its field is too short for. Of one that stands in several places, the longest counts.
struct CutText {
    Address address;
    std::string text;  ///< as the file has it, ISO 8859-1
    std::string whole; ///< as the model has it
};

/// In parts of the value; a change of more is no matter of digits any longer.
constexpr double noticeable_change = 1e-3;

/// What the text of an input file loses of the model that it was exported from. A real is lossy when the nearest
/// single-precision number to its text is another one.
struct Losses {
    std::uint64_t reals = 0;        ///< that have a text
    LossList vanishing;             ///< lossy reals whose text is 0
    LossList changed;               ///< others that are off by more than noticeable_change
    LossList digits_lost;           ///< the rest of the lossy ones
    std::uint64_t cut = 0;          ///< texts
    std::vector<CutText> cut_texts; ///< the first, up to the limit
};

/// Compares a model with its export, field by field in the order in which they are read, and gives the model the values
/// that the file shows. A field of asterisks shows none. Nothing here knows a field's width: the file itself says how
/// it writes a value.
class LossCount {
public:
    /// `model` outlives the count. Of each kind of loss, `most_listed` are listed; with `on_loss`, which hears of each
    /// as it comes, reals are neither listed nor counted.
    LossCount(Model& model, std::size_t most_listed, std::function<void(const FindingRule&, const Loss&)> on_loss = {})
        : model_(model), types_(model), most_(most_listed), on_loss_(std::move(on_loss))
    {
    }

    void see(const FieldText& field);
    /// The worst first. To be asked for once, at the end.
    [[nodiscard]] Losses result();

private:
    void compare(const Address& address, std::string_view text, float value);
    void compare(const Address& address, std::string_view text, const std::string& whole);
    void add(LossList& list, Loss loss) const;

    Model& model_;
    ExportedTypes types_;
    std::size_t most_;
    std::function<void(const FindingRule&, const Loss&)> on_loss_;
    Losses losses_;
};

} // namespace velm
