// One fetch over HTTP, pulled along between the events of the program.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "platform/EventLoop.h"
#include "platform/Http.h"
#include "platform/linux/LinuxHttp.h"

namespace tallowin::platform::linux_host {

class HttpFetch final : public InternetUrl {
 public:
  HttpFetch(EventLoop& loop, LinuxHttp::Limits limits, const std::string& agent,
            const std::string& url);
  HttpFetch(const HttpFetch&) = delete;
  HttpFetch& operator=(const HttpFetch&) = delete;
  ~HttpFetch() override;

  /// False if libcurl does not take what it was told: no address, or another scheme.
  [[nodiscard]] bool Started() const { return failure_ == CURLE_OK; }

  std::string InternetReadFile(std::size_t most) override;

 private:
  template <typename T>
  void Set(CURLoption option, T value) {
    if (failure_ == CURLE_OK) failure_ = curl_easy_setopt(handle_.get(), option, value);
  }
  void SetUp(const std::string& agent, const std::string& url);
  void AskForProxy(const std::string& url);
  void Pull();
  [[nodiscard]] bool Readable() const { return read_ < body_.size(); }
  static std::size_t Write(char* bytes, std::size_t size, std::size_t count, void* data);

  EventLoop& loop_;
  LinuxHttp::Limits limits_;
  std::chrono::steady_clock::time_point deadline_;
  std::thread askForProxy_;
  std::future<std::string> proxy_;  ///< until it is known
  std::string body_;
  std::size_t read_ = 0;
  bool over_ = false;
  CURLcode failure_ = CURLE_OK;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_{nullptr,
                                                                       &curl_slist_free_all};
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_{curl_easy_init(), &curl_easy_cleanup};
  std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi_{curl_multi_init(),
                                                               &curl_multi_cleanup};
};

}  // namespace tallowin::platform::linux_host
