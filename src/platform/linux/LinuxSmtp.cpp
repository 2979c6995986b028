#include "platform/linux/LinuxSmtp.h"

#include <curl/curl.h>

#include <algorithm>
#include <memory>

#include "platform/linux/MailAddress.h"
#include "platform/linux/MailText.h"

namespace tallowin::platform::linux_host {

namespace {

/// The server text as an address that libcurl understands; empty if it cannot be one.
std::string ServerUrl(std::string_view server) {
  if (server.empty() || !IsPlainLine(server)) return {};
  const auto scheme = server.find("://");
  const auto host = scheme == std::string_view::npos ? 0 : scheme + 3;
  // libcurl would tell the server what stands behind the host, and decode it before.
  const auto end = std::min(server.find_first_of("/?#", host), server.size());
  if (end != server.size() && server.substr(end) != "/") return {};
  return (host == 0 ? "smtp://" : "") + std::string(server);
}

/// Whether there is a user in it: in an address that works the sign stands nowhere else.
bool HasUser(std::string_view url) { return url.find('@') != std::string_view::npos; }

/// One sending.
class Transfer {
 public:
  Transfer(std::chrono::milliseconds patience, const std::string& authorities)
      : patience_(patience),
        authorities_(authorities),
        deadline_(std::chrono::steady_clock::now() + patience) {}

  CURLcode Send(const std::string& url, const MailContent& content) {
    if (!handle_) return CURLE_OUT_OF_MEMORY;
    text_ = MailText(content);
    for (const auto& recipient : content.to) AddRecipient(recipient.address);
    Address(url);
    Protect(HasUser(url));
    Limit();
    Set(CURLOPT_MAIL_FROM, content.from.address.c_str());
    Set(CURLOPT_MAIL_RCPT, recipients_.get());
    Set(CURLOPT_UPLOAD, 1L);
    Set(CURLOPT_READFUNCTION, &Transfer::Read);
    Set(CURLOPT_READDATA, this);
    Set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(text_.size()));
    if (failure_ == CURLE_OK) failure_ = curl_easy_perform(handle_.get());
    // Nothing but the deadline stops a sending.
    return failure_ == CURLE_ABORTED_BY_CALLBACK ? CURLE_OPERATION_TIMEDOUT : failure_;
  }

 private:
  template <typename T>
  void Set(CURLoption option, T value) {
    if (failure_ == CURLE_OK) failure_ = curl_easy_setopt(handle_.get(), option, value);
  }

  void Address(const std::string& url) {
    Set(CURLOPT_URL, url.c_str());
    Set(CURLOPT_PROTOCOLS_STR, "smtp,smtps");
    Set(CURLOPT_PROXY, "");  // not the one that the environment names for web pages
  }

  void Protect(bool always) {
    Set(CURLOPT_USE_SSL, static_cast<long>(always ? CURLUSESSL_ALL : CURLUSESSL_TRY));
    Set(CURLOPT_SSL_VERIFYPEER, 1L);
    Set(CURLOPT_SSL_VERIFYHOST, 2L);
    if (authorities_.empty()) return;
    Set(CURLOPT_CAINFO, authorities_.c_str());
    Set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
  }

  void Limit() {
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_TIMEOUT_MS, static_cast<long>(patience_.count()));
    Set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(patience_.count()));
    // The two times above end when the mail is through. A server that does not answer to the
    // farewell either, and a name server that does not answer at all, are left behind as well.
    Set(CURLOPT_XFERINFOFUNCTION, &Transfer::Watch);
    Set(CURLOPT_XFERINFODATA, this);
    Set(CURLOPT_NOPROGRESS, 0L);
    Set(CURLOPT_FORBID_REUSE, 1L);
    Set(CURLOPT_QUICK_EXIT, 1L);
  }

  void AddRecipient(const std::string& address) {
    curl_slist* longer = curl_slist_append(recipients_.get(), address.c_str());
    if (longer == nullptr) {
      failure_ = CURLE_OUT_OF_MEMORY;
      return;
    }
    (void)recipients_.release();
    recipients_.reset(longer);
  }

  static std::size_t Read(char* buffer, std::size_t size, std::size_t count, void* data) {
    auto& self = *static_cast<Transfer*>(data);
    const std::size_t length = std::min(size * count, self.text_.size() - self.sent_);
    std::copy_n(self.text_.data() + self.sent_, length, buffer);
    self.sent_ += length;
    return length;
  }

  static int Watch(void* data, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
    const auto& self = *static_cast<const Transfer*>(data);
    return std::chrono::steady_clock::now() >= self.deadline_ ? 1 : 0;
  }

  std::chrono::milliseconds patience_;
  const std::string& authorities_;
  std::chrono::steady_clock::time_point deadline_;
  std::string text_;
  std::size_t sent_ = 0;
  CURLcode failure_ = CURLE_OK;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> recipients_{nullptr,
                                                                          &curl_slist_free_all};
  /// Last, because closing it may still look at the others.
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_{curl_easy_init(), &curl_easy_cleanup};
};

}  // namespace

int LinuxSmtp::Send(const SmtpMail& mail) const {
  const std::string url = ServerUrl(mail.szDomainName);
  if (url.empty()) return CURLE_URL_MALFORMAT;
  const auto from = ParseMailAddress(mail.szFrom);
  const auto to = ParseMailAddresses(mail.szTo);
  if (!from || to.empty() || !IsPlainLine(mail.szSubject)) return CURLE_BAD_FUNCTION_ARGUMENT;
  return Transfer(patience_, authorities_)
      .Send(url, {.from = *from, .to = to, .subject = mail.szSubject, .text = mail.szMessage});
}

std::int16_t LinuxSmtp::SmtpSendMail(const SmtpMail& mail) {
  const int code = library_.State() == CURLE_OK ? Send(mail) : library_.State();
  return static_cast<std::int16_t>(code);
}

}  // namespace tallowin::platform::linux_host
