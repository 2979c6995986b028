// What a call fails with.
#pragma once

#include "platform/RunTimeError.h"

namespace tallowin::test {

/// The number of the run-time error, or 0 if there is none.
template <typename Call>
int ErrorOf(Call call) {
  try {
    call();
  } catch (const platform::RunTimeError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace tallowin::test
