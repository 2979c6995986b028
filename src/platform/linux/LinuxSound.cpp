#include "platform/linux/LinuxSound.h"

#include <canberra.h>
#include <unistd.h>

#include <QLibrary>
#include <string>

namespace tallowin::platform::linux_host {

namespace {

constexpr int kLibraryVersion = 0;
constexpr std::uint32_t kSoundId = 1;
constexpr std::uint32_t kBellId = 2;

/// The library's function, with the type that its header gives it. Null if it is not there.
template <typename Function>
Function* Resolve(QLibrary& library, const char* name) {
  return reinterpret_cast<Function*>(library.resolve(name));
}

}  // namespace

class LinuxSound::Player {
 public:
  Player()
      : create_(Resolve<decltype(ca_context_create)>(library_, "ca_context_create")),
        destroy_(Resolve<decltype(ca_context_destroy)>(library_, "ca_context_destroy")),
        cancel_(Resolve<decltype(ca_context_cancel)>(library_, "ca_context_cancel")),
        play_(Resolve<decltype(ca_context_play)>(library_, "ca_context_play")) {
    const bool whole =
        create_ != nullptr && destroy_ != nullptr && cancel_ != nullptr && play_ != nullptr;
    if (whole && create_(&context_) != CA_SUCCESS) context_ = nullptr;
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;
  ~Player() {
    if (context_ != nullptr) (void)destroy_(context_);
  }

  bool Play(const std::string& file) {
    if (context_ == nullptr) return false;
    (void)cancel_(context_, kSoundId);
    // Without the name of an event, as the library would look for a sound of that name in the
    // user's theme where the file cannot be played.
    return play_(context_, kSoundId, CA_PROP_MEDIA_FILENAME, file.c_str(), CA_PROP_APPLICATION_NAME,
                 "Tallowin", CA_PROP_CANBERRA_CACHE_CONTROL, "never", nullptr) == CA_SUCCESS;
  }

  void PlayBell() {
    if (context_ == nullptr) return;
    (void)cancel_(context_, kBellId);
    (void)play_(context_, kBellId, CA_PROP_EVENT_ID, "bell", CA_PROP_EVENT_DESCRIPTION, "Wrong key",
                CA_PROP_APPLICATION_NAME, "Tallowin", nullptr);
  }

 private:
  QLibrary library_{"canberra", kLibraryVersion};
  decltype(&ca_context_create) create_;
  decltype(&ca_context_destroy) destroy_;
  decltype(&ca_context_cancel) cancel_;
  decltype(&ca_context_play) play_;
  ca_context* context_ = nullptr;
};

LinuxSound::LinuxSound() = default;

LinuxSound::~LinuxSound() = default;

bool LinuxSound::PlaySound(std::string_view file) {
  const std::string path(file);
  if (access(path.c_str(), R_OK) != 0) return false;
  return LoadedPlayer().Play(path);
}

void LinuxSound::Beep() { LoadedPlayer().PlayBell(); }

LinuxSound::Player& LinuxSound::LoadedPlayer() {
  if (!player_) player_ = std::make_unique<Player>();
  return *player_;
}

}  // namespace tallowin::platform::linux_host
