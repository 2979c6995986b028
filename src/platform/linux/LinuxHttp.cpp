#include "platform/linux/LinuxHttp.h"

#include "platform/linux/HttpFetch.h"

namespace tallowin::platform::linux_host {
namespace {

class Session : public Internet {
 public:
  Session(EventLoop& loop, LinuxHttp::Limits limits, std::string agent)
      : loop_(loop), limits_(limits), agent_(std::move(agent)) {}

  std::unique_ptr<InternetUrl> InternetOpenUrl(const std::string& url) override {
    auto fetch = std::make_unique<HttpFetch>(loop_, limits_, agent_, url);
    if (!fetch->Started()) return nullptr;
    return fetch;
  }

 private:
  EventLoop& loop_;
  LinuxHttp::Limits limits_;
  std::string agent_;
};

}  // namespace

std::unique_ptr<Internet> LinuxHttp::InternetOpen(const std::string& agent) {
  if (library_.State() != 0) return nullptr;
  return std::make_unique<Session>(loop_, limits_, agent);
}

}  // namespace tallowin::platform::linux_host
