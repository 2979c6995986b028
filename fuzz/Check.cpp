#include "Check.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace tallowin::fuzz {

namespace {

bool SetsDirection(char32_t code) {
  switch (QChar::direction(code)) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
      return true;
    default:
      return code == 0x200E || code == 0x200F || code == 0x061C;
  }
}

bool IsHarmless(char32_t code) {
  const auto category = QChar::category(code);
  return category != QChar::Other_Control && category != QChar::Separator_Line &&
         category != QChar::Separator_Paragraph && !SetsDirection(code);
}

}  // namespace

void Require(bool holds, const char* what) {
  if (holds) return;
  (void)std::fprintf(stderr, "fuzz: does not hold: %s\n", what);
  std::abort();
}

std::string_view TakeLine(std::string_view& text) {
  const auto line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  return line;
}

bool IsPlainLine(std::string_view text) {
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString decoded = decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  const auto characters = decoded.toStdU32String();
  return !decode.hasError() && std::ranges::all_of(characters, IsHarmless);
}

bool IsPlain(std::string_view text) {
  std::string rest(text);
  std::erase_if(rest, [](char c) { return c == '\n' || c == '\t'; });
  return IsPlainLine(rest);
}

}  // namespace tallowin::fuzz
