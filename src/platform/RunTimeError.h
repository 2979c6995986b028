// Run-time errors and the end of the program: the only two things that this system throws.
#pragma once

#include <new>
#include <stdexcept>
#include <string>

namespace tallowin::platform {

/// A failure with a number and a description, raised by the operations of the host and by checked
/// operations of the system itself. What happens to it is decided where it is caught: passed over
/// statement by statement (core/ErrorRegimes.h), looked at by the one handler of a routine (an
/// ordinary catch), or by nobody, which ends the program with a message box.
///
/// Numbers below 1000 are those of the run-time whose conventions the suite keeps;
/// numbers from 10000 on are those of the Windows socket library, but for those above 35000, which
/// are those of list views.
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
inline constexpr int kInvalidProcedureCall = 5;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kInternal = 51;
inline constexpr int kOverflow = 6;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDiskFull = 61;
inline constexpr int kPermissionDenied = 70;
inline constexpr int kPathFileAccess = 75;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kLoopNotInitialised = 92;
inline constexpr int kNoSuchElement = 340;
inline constexpr int kElementAlreadyLoaded = 360;
inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kInvalidArrayIndex = 381;
inline constexpr int kFormAlreadyDisplayed = 400;
inline constexpr int kIndexOutOfBounds = 35600;
}  // namespace error

/// Any failure as a run-time error, for what catches errors: those of the language's library count
/// like those of the host.
[[nodiscard]] inline RunTimeError AsRunTimeError(const std::exception& failure) {
  if (const auto* known = dynamic_cast<const RunTimeError*>(&failure)) return *known;
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr) {
    return {error::kOutOfMemory, "Out of memory"};
  }
  return {error::kInternal, std::string("Internal error: ") + failure.what()};
}

/// Thrown by EventLoop::End to leave everything that is under way. It is no error: nobody but the
/// event loop catches it, and it is not a std::exception so that no handler takes it for a failure.
struct ProgramEnded {};

}  // namespace tallowin::platform
