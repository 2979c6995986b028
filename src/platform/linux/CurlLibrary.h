// The life of libcurl in this process.
#pragma once

namespace tallowin::platform::linux_host {

/// libcurl wants to be set up before its first use, while no other thread looks at the same
/// libraries. The host holds one of these before anything that transfers; several hosts in one
/// process are counted by the library itself.
class CurlLibrary {
 public:
  CurlLibrary();
  CurlLibrary(const CurlLibrary&) = delete;
  CurlLibrary& operator=(const CurlLibrary&) = delete;
  ~CurlLibrary();

  /// libcurl's code; 0 if transfers can be made.
  [[nodiscard]] int State() const { return state_; }

 private:
  int state_;
};

}  // namespace tallowin::platform::linux_host
