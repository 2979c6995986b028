// All bytes of a file go through these loops. They are written so that the compiler can make vector
// instructions of them: no branches, no tables, one byte of result for each byte of text.
#include "analysis/SuspiciousWords.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

// TALLOWIN_VECTOR_CLONES comes from the build: the attribute, where the compiler has one, by which
// a loop is compiled for several generations of processors. The fitting one is chosen at run time.

namespace tallowin::analysis {
namespace {

/// Small enough to stay in the nearest cache between the steps.
constexpr std::size_t kChunk = 8192;
/// How many bytes of a word the first look compares.
constexpr std::size_t kLook = 3;

constexpr std::size_t kLongestWord = std::ranges::max(kSuspiciousWords, {}, [](const auto& entry) {
                                       return entry.word.size();
                                     }).word.size();
static_assert(std::ranges::all_of(kSuspiciousWords,
                                  [](const auto& entry) { return entry.word.size() >= kLook; }));

TALLOWIN_VECTOR_CLONES
void Lower(unsigned char* text, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    const auto letter = static_cast<unsigned char>(text[i] - 'A');
    text[i] = static_cast<unsigned char>(text[i] | (letter < 26 ? 0x20 : 0));
  }
}

template <std::size_t n>
constexpr unsigned char LetterOf(std::size_t word) {
  return static_cast<unsigned char>(kSuspiciousWords[word].word[n]);
}

/// 1 where one of the words may start, as far as its first bytes tell, 0 elsewhere. `text` goes on
/// for two bytes behind `size`.
template <std::size_t... word>
[[gnu::always_inline]] inline void MarkStarts(const unsigned char* __restrict text,
                                              unsigned char* __restrict marks, std::size_t size,
                                              std::index_sequence<word...> /*words*/) {
  for (std::size_t i = 0; i < size; ++i) {
    const unsigned char a = text[i];
    const unsigned char b = text[i + 1];
    const unsigned char c = text[i + 2];
    const int found = (... | (static_cast<int>(a == LetterOf<0>(word)) &
                              static_cast<int>(b == LetterOf<1>(word)) &
                              static_cast<int>(c == LetterOf<2>(word))));
    marks[i] = static_cast<unsigned char>(found);
  }
}

TALLOWIN_VECTOR_CLONES
void Mark(const unsigned char* text, unsigned char* marks, std::size_t size) {
  MarkStarts(text, marks, size, std::make_index_sequence<kSuspiciousWords.size()>());
}

/// `level`, or the higher one of a word that `text` starts with.
int LevelAt(std::string_view text, int level) {
  for (const SuspiciousWord& entry : kSuspiciousWords) {
    if (entry.level > level && text.starts_with(entry.word)) level = entry.level;
  }
  return level;
}

class Scan {
 public:
  explicit Scan(std::string_view text) : text_(text) {}

  [[nodiscard]] int Level() const { return level_; }

  /// Looks for words that start in the `size` bytes at `begin`.
  void Search(std::size_t begin, std::size_t size) {
    const std::size_t whole =
        std::min(size, text_.size() - std::min(text_.size(), begin + kLook - 1));
    const auto* bytes = reinterpret_cast<const unsigned char*>(text_.data());
    Mark(bytes + begin, marks_.data(), whole);
    std::fill_n(marks_.begin() + static_cast<std::ptrdiff_t>(whole), sizeof(std::uint64_t), 0);
    for (std::size_t i = 0; i < whole; i += sizeof(std::uint64_t)) LookAt(begin, i);
  }

 private:
  void LookAt(std::size_t begin, std::size_t first) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, marks_.data() + first, sizeof eight);
    if (eight == 0) return;
    for (std::size_t i = first; i < first + sizeof eight; ++i) {
      if (marks_[i] != 0) level_ = LevelAt(text_.substr(begin + i, kLongestWord), level_);
    }
  }

  std::string_view text_;
  std::array<unsigned char, kChunk + sizeof(std::uint64_t)> marks_;
  int level_ = 1;
};

}  // namespace

int LowerAndRate(std::span<char> text) {
  // The lower case runs ahead of the search by what a word may reach beyond its chunk.
  Scan scan({text.data(), text.size()});
  std::size_t lowered = 0;
  for (std::size_t begin = 0; begin < text.size(); begin += kChunk) {
    const std::size_t size = std::min(kChunk, text.size() - begin);
    const std::size_t needed = std::min(text.size(), begin + size + kLongestWord);
    Lower(reinterpret_cast<unsigned char*>(text.data()) + lowered, needed - lowered);
    lowered = needed;
    scan.Search(begin, size);
  }
  return scan.Level();
}

}  // namespace tallowin::analysis
