#include "platform/linux/HttpFetch.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include "platform/linux/SystemProxy.h"

namespace tallowin::platform::linux_host {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPullInterval{10};
constexpr const char* kSchemes = "http,https";

}  // namespace

HttpFetch::HttpFetch(EventLoop& loop, LinuxHttp::Limits limits, const std::string& agent,
                     const std::string& url)
    : loop_(loop), limits_(limits), deadline_(steady_clock::now() + limits.time) {
  if (!handle_ || !multi_) {
    failure_ = CURLE_OUT_OF_MEMORY;
    return;
  }
  SetUp(agent, url);
  if (Started()) AskForProxy(url);
}

HttpFetch::~HttpFetch() {
  if (askForProxy_.joinable()) askForProxy_.detach();
  if (handle_ && multi_) curl_multi_remove_handle(multi_.get(), handle_.get());
}

void HttpFetch::SetUp(const std::string& agent, const std::string& url) {
  headers_.reset(curl_slist_append(nullptr, "Cache-Control: no-cache"));
  Set(CURLOPT_HTTPHEADER, headers_.get());
  Set(CURLOPT_PROTOCOLS_STR, kSchemes);
  // What was asked for encrypted does not go on in the clear.
  const bool encrypted = url.starts_with("https:");
  Set(CURLOPT_REDIR_PROTOCOLS_STR, encrypted ? "https" : kSchemes);
  Set(CURLOPT_URL, url.c_str());
  Set(CURLOPT_USERAGENT, agent.c_str());
  constexpr long kMostRedirections = 10;
  Set(CURLOPT_FOLLOWLOCATION, 1L);
  Set(CURLOPT_MAXREDIRS, kMostRedirections);
  Set(CURLOPT_SSL_VERIFYPEER, 1L);
  Set(CURLOPT_SSL_VERIFYHOST, 2L);
  Set(CURLOPT_NOSIGNAL, 1L);
  Set(CURLOPT_QUICK_EXIT, 1L);  // a name server that does not answer is left behind
  Set(CURLOPT_WRITEFUNCTION, &HttpFetch::Write);
  Set(CURLOPT_WRITEDATA, this);
}

/// The system may ask a server for it: in a thread, which is left alone when it takes too long.
void HttpFetch::AskForProxy(const std::string& url) {
  std::promise<std::string> promise;
  proxy_ = promise.get_future();
  try {
    askForProxy_ = std::thread(
        [url, promise = std::move(promise)]() mutable { promise.set_value(SystemProxyFor(url)); });
  } catch (const std::system_error&) {
    failure_ = CURLE_OUT_OF_MEMORY;
  }
}

std::size_t HttpFetch::Write(char* bytes, std::size_t size, std::size_t count, void* data) {
  auto& self = *static_cast<HttpFetch*>(data);
  const std::size_t taken = std::min(size * count, self.limits_.bytes - self.body_.size());
  self.body_.append(bytes, taken);
  return taken;  // less than what came ends the transfer
}

std::string HttpFetch::InternetReadFile(std::size_t most) {
  if (!Readable() && !over_) {
    // In the timer, which goes on while a question of another handler stands open.
    const auto tick = loop_.MakeTimer(kPullInterval, [this] { Pull(); });
    tick->SetEnabled(true);
    loop_.RunUntil([this] { return Readable() || over_; });
  }
  std::string piece = body_.substr(read_, most);
  read_ += piece.size();
  return piece;
}

void HttpFetch::Pull() {
  if (over_) return;
  const bool tooLate = steady_clock::now() >= deadline_;
  if (proxy_.valid()) {
    over_ = tooLate;
    if (proxy_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return;
    askForProxy_.join();
    Set(CURLOPT_PROXY, proxy_.get().c_str());  // an empty one is none at all
    curl_multi_add_handle(multi_.get(), handle_.get());
  }
  int running = 0;
  const CURLMcode result = curl_multi_perform(multi_.get(), &running);
  if (result != CURLM_OK || running == 0 || tooLate) over_ = true;
}

}  // namespace tallowin::platform::linux_host
