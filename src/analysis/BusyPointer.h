// The pointer that tells a user to wait.
#pragma once

#include "forms/Form.h"

namespace tallowin::analysis {

/// For as long as it lives; then the pointer is what it was before, whatever happened, also by the
/// end of the program.
class BusyPointer {
 public:
  explicit BusyPointer(forms::Form& form) : form_(form), before_(form.MousePointer()) {
    form_.SetMousePointer(forms::MousePointer::Hourglass);
  }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
  ~BusyPointer() { form_.SetMousePointer(before_); }

 private:
  forms::Form& form_;
  forms::MousePointer before_;
};

}  // namespace tallowin::analysis
