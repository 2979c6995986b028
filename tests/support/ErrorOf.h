// What a call fails with.
#pragma once

#include "platform/RunTimeError.h"

namespace tallowin::test {

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
