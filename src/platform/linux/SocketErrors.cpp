#include "platform/linux/SocketErrors.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace tallowin::platform::linux_host {
namespace {

struct Translation {
  int errnoValue;
  int number;
  const char* description;
};

constexpr auto kTranslations = std::to_array<Translation>({
    {EINTR, 10004, "Interrupted function call"},
    {EACCES, 10013, "Permission denied"},
    {EPERM, 10013, "Permission denied"},
    {EFAULT, 10014, "Bad address"},
    {EINVAL, 10022, "Invalid argument"},
    {EMFILE, 10024, "Too many open files"},
    {ENFILE, 10024, "Too many open files"},
    {EAGAIN, 10035, "Resource temporarily unavailable"},
    {EINPROGRESS, 10036, "Operation now in progress"},
    {EALREADY, 10037, "Operation already in progress"},
    {ENOTSOCK, 10038, "Socket operation on nonsocket"},
    {EDESTADDRREQ, 10039, "Destination address required"},
    {EMSGSIZE, 10040, "Message too long"},
    {EPROTOTYPE, 10041, "Protocol wrong type for socket"},
    {ENOPROTOOPT, 10042, "Bad protocol option"},
    {EPROTONOSUPPORT, 10043, "Protocol not supported"},
    {ESOCKTNOSUPPORT, 10044, "Socket type not supported"},
    {EOPNOTSUPP, 10045, "Operation not supported"},
    {EPFNOSUPPORT, 10046, "Protocol family not supported"},
    {EAFNOSUPPORT, 10047, "Address family not supported by protocol family"},
    {EADDRINUSE, 10048, "Address already in use"},
    {EADDRNOTAVAIL, 10049, "Cannot assign requested address"},
    {ENETDOWN, 10050, "Network is down"},
    {ENETUNREACH, 10051, "Network is unreachable"},
    {ENETRESET, 10052, "Network dropped connection on reset"},
    {ECONNABORTED, 10053, "Software caused connection abort"},
    {EPIPE, 10053, "Software caused connection abort"},
    {ECONNRESET, 10054, "Connection reset by peer"},
    {ENOBUFS, 10055, "No buffer space available"},
    {ENOMEM, 10055, "No buffer space available"},
    {ENOSPC, 10055, "No buffer space available"},
    {EISCONN, 10056, "Socket is already connected"},
    {ENOTCONN, 10057, "Socket is not connected"},
    {ESHUTDOWN, 10058, "Cannot send after socket shutdown"},
    {ETIMEDOUT, 10060, "Connection timed out"},
    {ECONNREFUSED, 10061, "Connection refused"},
    {EHOSTDOWN, 10064, "Host is down"},
    {EHOSTUNREACH, 10065, "No route to host"},
});

}  // namespace

RunTimeError SocketError(int errnoValue) {
  const auto found = std::ranges::find(kTranslations, errnoValue, &Translation::errnoValue);
  if (found == kTranslations.end()) return {10107, "System call failure"};
  return {found->number, found->description};
}

RunTimeError HostNotFound() { return {11001, "Host not found"}; }

}  // namespace tallowin::platform::linux_host
