#include "platform/linux/LinuxHttp.h"

#include <gmock/gmock.h>

#include <map>

#include "LoopTest.h"
#include "LoopbackServer.h"

namespace tallowin::platform::linux_host {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

/// Sends each caller the pieces for the path that it asks for, with a pause in front of each, and
/// closes; behind no piece at all it says nothing and waits.
class WebServer {
 public:
  std::map<std::string, std::vector<std::string>> pages;  ///< set before the first call
  [[nodiscard]] std::string Url(const std::string& path) const {
    return "http://" + server_.Address() + path;
  }
  [[nodiscard]] int Callers() const { return server_.callers; }
  /// All requests. The server is at its end then.
  [[nodiscard]] const std::string& Asked() {
    server_.End();
    return asked_;
  }

 private:
  void Serve(int caller) {
    std::string request;
    server_.Receive(caller, request);
    asked_ += request;
    const auto start = request.find(' ') + 1;
    const auto& pieces = pages[request.substr(start, request.find(' ', start) - start)];
    for (const auto& piece : pieces) {
      std::this_thread::sleep_for(5ms);
      if (send(caller, piece.data(), piece.size(), MSG_NOSIGNAL) < 0) return;
    }
    while (pieces.empty() && server_.Receive(caller, request)) {
    }
  }

  std::string asked_;
  test::LoopbackServer server_{[this](int caller) { Serve(caller); }};
};

constexpr const char* kOk = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";

std::string To(const std::string& address) {
  return "HTTP/1.1 302 Found\r\nConnection: close\r\nLocation: " + address + "\r\n\r\nno";
}

struct LinuxHttpTest : LoopTest {
  CurlLibrary library;
  WebServer server;
  LinuxHttp::Limits limits;
  std::size_t longestPiece = 0;

  std::string Fetch(const std::string& url) {
    LinuxHttp http(library, loop, limits);
    const auto internet = http.InternetOpen("an agent");
    const auto page = internet->InternetOpenUrl(url);
    std::string body;
    if (!page) return body;
    for (auto piece = page->InternetReadFile(2048); !piece.empty();
         piece = page->InternetReadFile(2048)) {
      body += piece;
      longestPiece = std::max(longestPiece, piece.size());
    }
    return body;
  }
};

TEST_F(LinuxHttpTest, GivesWhatCameInPieces) {
  const std::string text(5000, 'x');
  server.pages = {{"/plain", {kOk + text}},
                  {"/error", {"HTTP/1.1 404 Not Found\r\nConnection: close\r\n\r\nnot here"}},
                  {"/cut", {"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nhalf"}},
                  {"/elsewhere", {To("/plain")}}};
  EXPECT_EQ(Fetch(server.Url("/plain")), text);
  EXPECT_EQ(longestPiece, 2048U);
  EXPECT_EQ(Fetch(server.Url("/error")), "not here");
  EXPECT_EQ(Fetch(server.Url("/cut")), "half");
  EXPECT_EQ(Fetch(server.Url("/elsewhere")), text);
  EXPECT_THAT(server.Asked(), HasSubstr("User-Agent: an agent\r\n"));
  EXPECT_THAT(server.Asked(), HasSubstr("Cache-Control: no-cache\r\n"));
}

TEST_F(LinuxHttpTest, FollowsToTheWebOnlyAndNotForEver) {
  limits.time = 2s;
  const std::string ftp = "ftp" + server.Url("/").substr(4);
  server.pages = {{"/file", {To("file:///etc/passwd")}},
                  {"/ftp", {To(ftp)}},
                  {"/round", {To("/round")}},
                  {"/nowhere", {To("http://127.0.0.1:1/")}}};
  EXPECT_EQ(Fetch(server.Url("/ftp")) + Fetch(ftp), "");
  EXPECT_EQ(server.Callers(), 1) << "the other protocol is not even tried";
  for (const auto& url : {server.Url("/file"), server.Url("/round"), server.Url("/nowhere"),
                          std::string("file:///etc/passwd"), std::string("no address")}) {
    EXPECT_EQ(Fetch(url), "") << url;
  }
}

TEST_F(LinuxHttpTest, EventsRunWhileAServerTakesItsTimeWhichHasItsEnd) {
  limits = {.bytes = 10000, .time = 400ms};
  server.pages = {{"/silent", {}},
                  {"/slow", {kOk, "a", "b", "c"}},
                  {"/huge", std::vector<std::string>(100, std::string(5000, 'x'))}};
  server.pages["/huge"][0] = kOk;
  int ticks = 0;
  const auto timer = loop.MakeTimer(10ms, [&] { ++ticks; });
  timer->SetEnabled(true);
  EXPECT_EQ(Fetch(server.Url("/silent")), "");
  EXPECT_GT(ticks, 1);
  limits.time = 20s;  // these end by themselves
  EXPECT_EQ(Fetch(server.Url("/slow")), "abc");
  EXPECT_EQ(Fetch(server.Url("/huge")), std::string(10000, 'x'));
}

TEST_F(LinuxHttpTest, TheEndOfTheProgramEndsAFetch) {
  const auto timer = loop.MakeTimer(20ms, [&] { loop.End(0); });
  timer->SetEnabled(true);
  server.pages = {{"/silent", {}}};
  bool wentOn = false;
  RunProgram([&] {
    (void)Fetch(server.Url("/silent"));
    wentOn = true;
  });
  EXPECT_FALSE(wentOn);
}

}  // namespace
}  // namespace tallowin::platform::linux_host
