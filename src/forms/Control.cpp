#include "forms/Control.h"

#include "forms/Form.h"

namespace tallowin::forms {

Place::Place(Control& in) : form(in.form_), container(&in) {}

Control::Control(Place place, std::string name, std::string caption)
    : form_(place.form),
      container_(place.container),
      name_(std::move(name)),
      caption_(std::move(caption)) {
  form_->Register(*this);
}

void Control::SetCaption(std::string caption) {
  Assign(caption_, std::move(caption), Property::Caption);
}

void Control::SetToolTip(std::string toolTip) {
  Assign(toolTip_, std::move(toolTip), Property::ToolTip);
}

void Control::SetEnabled(bool enabled) { Assign(enabled_, enabled, Property::Enabled); }

void Control::SetVisible(bool visible) { Assign(visible_, visible, Property::Visible); }

bool Control::Usable() const {
  for (const Control* control = this; control != nullptr; control = control->container_) {
    if (!control->enabled_ || !control->visible_) return false;
  }
  return true;
}

Observation Control::Observe(Observer observer) {
  auto watch = std::make_shared<Watch>(Watch{std::move(observer)});
  watches_.push_back(watch);
  Observation observation(watch.get(), [watch](void*) { watch->ended = true; });
  watch->observer({Property::Everything});
  return observation;
}

void Control::Notify(const Change& change) {
  // Observers may come and go while they are being told, so the list only shrinks when no round is
  // under way; a list keeps the places of all others when it grows.
  ++notifying_;
  for (auto& watch : watches_) {
    if (!watch->ended) watch->observer(change);
  }
  if (--notifying_ == 0) {
    watches_.remove_if([](const auto& watch) { return watch->ended; });
  }
}

}  // namespace tallowin::forms
