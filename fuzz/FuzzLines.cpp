// Bytes cut into lines wherever they were cut into pieces on the way, and made fit to be shown. The
// first byte says how long the pieces are.
#include <algorithm>
#include <string>
#include <vector>

#include "Check.h"
#include "console/Escapes.h"
#include "forms/PlainText.h"
#include "platform/linux/AutostartNames.h"
#include "platform/linux/LineReader.h"

namespace {

using tallowin::fuzz::Require;
namespace linux_host = tallowin::platform::linux_host;
namespace console = tallowin::console;

std::vector<std::string> Lines(std::string_view bytes, std::size_t piece) {
  std::vector<std::string> lines;
  const auto take = [&](std::string line) { lines.push_back(std::move(line)); };
  linux_host::LineReader reader;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
    reader.Add(bytes.substr(0, piece), take);
  }
  reader.Finish(take);
  return lines;
}

void CheckText(std::string_view bytes) {
  Require(tallowin::fuzz::IsPlain(tallowin::forms::PlainText(bytes)), "plain text is plain");
  Require(tallowin::fuzz::IsPlainLine(linux_host::Printable(bytes)), "what is printed is a line");
  const std::string escaped = console::Escape(bytes);
  Require(tallowin::fuzz::IsPlainLine(escaped), "and so is what is escaped");
  Require(console::Unescape(escaped) == bytes, "from which the bytes come back");
  const auto shown = console::FirstCharacters(bytes, 20);
  Require(shown.size() <= 80 && console::CountCharacters(shown) <= 20, "few characters are few");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes = tallowin::fuzz::TextOf(data + 1, size - 1);
  const auto lines = Lines(bytes, size);
  Require(Lines(bytes, std::size_t{data[0]} + 1) == lines, "pieces make no difference");
  for (const auto& line : lines) {
    Require(line.find('\n') == std::string::npos, "a line is one line");
  }
  CheckText(bytes);
  (void)console::Unescape(bytes);
  return 0;
}
