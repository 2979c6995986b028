#include "reporting/HTTPModule.h"

namespace tallowin::reporting {

std::string HTTPModule::OpenUrl(const std::string& url) {
  constexpr std::size_t kPiece = 2048;
  const auto internet = http_.InternetOpen("VB OpenUrl");
  const auto page = internet ? internet->InternetOpenUrl(url) : nullptr;
  if (!page) return {};
  std::string body;
  for (;;) {
    const std::string piece = page->InternetReadFile(kPiece);
    body += piece;
    loop_.DoEvents();
    if (piece.empty()) return body;
  }
}

}  // namespace tallowin::reporting
