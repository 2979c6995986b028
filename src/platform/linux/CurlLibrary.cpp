#include "platform/linux/CurlLibrary.h"

#include <curl/curl.h>

namespace tallowin::platform::linux_host {

CurlLibrary::CurlLibrary() : state_(curl_global_init(CURL_GLOBAL_DEFAULT)) {}

CurlLibrary::~CurlLibrary() {
  if (state_ == CURLE_OK) curl_global_cleanup();
}

}  // namespace tallowin::platform::linux_host
