#include "platform/linux/Languages.h"

#include <unicode/uloc.h>
#include <unicode/unistr.h>

#include <array>

namespace tallowin::platform::linux_host {

std::string LanguageName(std::uint16_t language) {
  constexpr const char* kNeutral = "Language Neutral";
  constexpr std::uint16_t kPrimaryLanguage = 0x3FF;
  if ((language & kPrimaryLanguage) == 0) return kNeutral;
  std::array<char, ULOC_FULLNAME_CAPACITY> locale = {};
  UErrorCode error = U_ZERO_ERROR;
  uloc_getLocaleForLCID(language, locale.data(), static_cast<int32_t>(locale.size()), &error);
  if (U_FAILURE(error) != 0 || locale.front() == '\0') return kNeutral;

  std::array<UChar, 256> name = {};
  const int32_t length = uloc_getDisplayName(locale.data(), nullptr, name.data(),
                                             static_cast<int32_t>(name.size()), &error);
  if (U_FAILURE(error) != 0) return kNeutral;
  std::string text;
  icu::UnicodeString(name.data(), length).toUTF8String(text);
  return text;
}

std::uint16_t UserLanguage() {
  constexpr std::uint16_t kAmericanEnglish = 0x409;
  const auto number = static_cast<std::uint16_t>(uloc_getLCID(uloc_getDefault()));
  return number == 0 ? kAmericanEnglish : number;
}

}  // namespace tallowin::platform::linux_host
