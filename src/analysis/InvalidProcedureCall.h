// The error of an argument that makes no sense to an operation on text.
#pragma once

#include "platform/RunTimeError.h"

namespace tallowin::analysis {

[[nodiscard]] inline platform::RunTimeError InvalidProcedureCall() {
  return {platform::error::kInvalidProcedureCall, "Invalid procedure call or argument"};
}

}  // namespace tallowin::analysis
