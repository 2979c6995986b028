#include "core/SocketArray.h"

namespace tallowin::core {

using platform::RunTimeError;

void SocketArray::Load(int index) {
  auto& element = elements_.at(static_cast<std::size_t>(index));
  if (element) throw RunTimeError(platform::error::kElementAlreadyLoaded, "Object already loaded");
  element = factory_.MakeWinsock();
  element->SetEvents(eventsOf_(index));
}

void SocketArray::Unload(int index) {
  (void)(*this)(index);  // throws if it is not there
  elements_[static_cast<std::size_t>(index)].reset();
}

platform::Winsock& SocketArray::operator()(int index) const {
  const auto& element = elements_.at(static_cast<std::size_t>(index));
  if (!element) {
    throw RunTimeError(platform::error::kNoSuchElement,
                       "Control array element '" + std::to_string(index) + "' doesn't exist");
  }
  return *element;
}

}  // namespace tallowin::core
