#include "platform/linux/IcmpStatuses.h"

#include <linux/icmp.h>

#include <cerrno>

#include "platform/Icmp.h"

namespace tallowin::platform::linux_host {
namespace {

std::uint32_t StatusOfUnreachable(std::uint8_t code) {
  switch (code) {
    case ICMP_HOST_UNREACH:
    case ICMP_HOST_UNKNOWN:
    case ICMP_HOST_ISOLATED:
    case ICMP_HOST_ANO:
    case ICMP_HOST_UNR_TOS:
    case ICMP_PREC_VIOLATION:
    case ICMP_PREC_CUTOFF:
      return icmp::kHostNotReachable;
    case ICMP_PROT_UNREACH:
      return icmp::kProtocolNotReachable;
    case ICMP_PORT_UNREACH:
      return icmp::kPortNotReachable;
    case ICMP_FRAG_NEEDED:
      return icmp::kPacketTooBig;
    case ICMP_SR_FAILED:
      return icmp::kBadRoute;
    default:
      return icmp::kNetworkNotReachable;
  }
}

}  // namespace

std::optional<std::uint32_t> StatusOfMessage(std::uint8_t type, std::uint8_t code) {
  switch (type) {
    case ICMP_DEST_UNREACH:
      return StatusOfUnreachable(code);
    case ICMP_TIME_EXCEEDED:
      return code == ICMP_EXC_FRAGTIME ? icmp::kTtlExpiredReassembly : icmp::kTtlExpiredInTransit;
    case ICMP_PARAMETERPROB:
      return icmp::kParameterProblem;
    case ICMP_SOURCE_QUENCH:
      return icmp::kSourceQuench;
    default:
      return std::nullopt;
  }
}

std::uint32_t StatusOfOpenError(int errnoValue) {
  switch (errnoValue) {
    case EMFILE:
    case ENFILE:
    case ENOBUFS:
    case ENOMEM:
      return icmp::kNoResources;
    default:
      return icmp::kGeneralFailure;
  }
}

std::uint32_t StatusOfSendError(int errnoValue) {
  switch (errnoValue) {
    case ENETUNREACH:
      return icmp::kNetworkNotReachable;
    case EHOSTUNREACH:
    case EHOSTDOWN:
    case ENETDOWN:
      return icmp::kHostNotReachable;
    case EMSGSIZE:
      return icmp::kPacketTooBig;
    case ENOBUFS:
    case ENOMEM:
      return icmp::kNoResources;
    // Broadcast and other addresses that take no echo.
    case EACCES:
    case EINVAL:
      return icmp::kBadDestination;
    default:
      return icmp::kGeneralFailure;
  }
}

}  // namespace tallowin::platform::linux_host
