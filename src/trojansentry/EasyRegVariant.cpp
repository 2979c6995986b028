#include "trojansentry/EasyRegVariant.h"

#include "core/MiscRoutines.h"

namespace tallowin::trojansentry {

namespace {

using core::Variant;

std::string Joined(const VariantArray& array) {
  std::string text;
  if (!array) return text;
  for (const Variant& part : *array) {
    if (&part != array->data()) text += ' ';
    text += core::ToText(part);
  }
  return text;
}

std::int32_t NumberOf(const Variant& value) {
  const auto* number = std::get_if<std::int32_t>(&value);
  return number == nullptr ? 0 : *number;
}

}  // namespace

std::size_t NameCount(const VariantArray& list) {
  return core::IsArrayEmpty(list) || list->empty() ? 0 : list->size() - 1;
}

std::string ToText(const EasyRegVariant& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  if (const auto* array = std::get_if<VariantArray>(&value)) return Joined(*array);
  return {};
}

bool IsLess(const Variant& a, const Variant& b) {
  const bool textA = std::holds_alternative<std::string>(a);
  const bool textB = std::holds_alternative<std::string>(b);
  const bool numberA = std::holds_alternative<std::int32_t>(a);
  const bool numberB = std::holds_alternative<std::int32_t>(b);
  if (numberA && textB) return true;
  if (textA && numberB) return false;
  return textA || textB ? core::ToText(a) < core::ToText(b) : NumberOf(a) < NumberOf(b);
}

}  // namespace tallowin::trojansentry
