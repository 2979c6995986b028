// Words of a command line.
#pragma once

#include <string>

namespace tallowin {

/// Takes the next word off the front of `line`: blanks in front of it are dropped, the blank behind
/// it goes with it. The last word leaves `line` empty.
void GetNxtWord(std::string& line, std::string& word);

}  // namespace tallowin
