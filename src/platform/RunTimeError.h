// Run-time errors and the end of the program: the only two things that this system throws.
#pragma once

#include <stdexcept>
#include <string>

namespace tallowin::platform {

/// A failure with a number and a description, raised by the operations of the host and by checked
/// operations of the system itself. What happens to it is decided where it is caught: passed over
/// statement by statement (core/ErrorRegimes.h), looked at by the one handler of a routine (an
/// ordinary catch), or by nobody, which ends the program with a message box.
///
/// Numbers below 1000 are those of the language run-time that the suite's behaviour was designed
/// on; numbers from 10000 on are those of the Windows socket library.
class RunTimeError : public std::runtime_error {
 public:
  RunTimeError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}

  [[nodiscard]] int Number() const noexcept { return number_; }
  [[nodiscard]] std::string Description() const { return what(); }

 private:
  int number_;
};

namespace error {
inline constexpr int kInvalidArgument = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDiskFull = 61;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kLoopNotInitialised = 92;
inline constexpr int kNoSuchElement = 340;
inline constexpr int kElementAlreadyLoaded = 360;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kInvalidArrayIndex = 381;
}  // namespace error

/// Thrown by EventLoop::End to leave everything that is under way. It is no error: nobody but the
/// event loop catches it, and it is not a std::exception so that no handler takes it for a failure.
struct ProgramEnded {};

}  // namespace tallowin::platform
