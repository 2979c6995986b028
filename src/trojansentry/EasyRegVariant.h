// What the registry class gives and takes: nothing, a text, a number or an array.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/VbRegMod.h"

namespace tallowin::trojansentry {

/// A dynamic array that is counted from 0. It is not there until it is first dimensioned.
using VariantArray = std::optional<std::vector<core::Variant>>;

/// An array that is not there is something else than nothing at all.
using EasyRegVariant = std::variant<std::monostate, std::string, std::int32_t, VariantArray>;

/// The number of names in a list whose slot 0 is empty; 0 also for a list that is not there.
[[nodiscard]] std::size_t NameCount(const VariantArray& list);

/// The text of a value as it is shown. The parts of an array stand with a blank between them.
[[nodiscard]] std::string ToText(const EasyRegVariant& value);

/// The order of two elements: nothing counts as the empty text or as 0, whichever it is compared
/// with, and any number comes before any text.
[[nodiscard]] bool IsLess(const core::Variant& a, const core::Variant& b);

}  // namespace tallowin::trojansentry
