#include "desktop/EmbedderWatch.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace tallowin::desktop {

namespace {

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

std::uint32_t Atom(xcb_connection_t* connection, std::string_view name) {
  const auto asked =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, asked, nullptr),
                                             &std::free);
  return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

/// The toolkit selects the same events of the same window, on the same connection.
void TellOfEndOf(std::uint32_t window, xcb_connection_t* connection) {
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  const auto asked =
      xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &events);
  std::free(xcb_request_check(connection, asked));
}

}  // namespace

EmbedderWatch::EmbedderWatch(std::function<void()> changed) : changed_(std::move(changed)) {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  if (x11 == nullptr) return;
  connection_ = x11->connection();
  selection_ = Atom(connection_, "_NET_SYSTEM_TRAY_S0");
  manager_ = Atom(connection_, "MANAGER");
  soon_.setSingleShot(true);
  QObject::connect(&soon_, &QTimer::timeout, [this] { Look(); });
  qGuiApp->installNativeEventFilter(this);
  owner_ = FindOwner();
}

EmbedderWatch::~EmbedderWatch() {
  if (connection_ != nullptr) qGuiApp->removeNativeEventFilter(this);
}

std::uint32_t EmbedderWatch::FindOwner() const {
  const auto asked = xcb_get_selection_owner(connection_, selection_);
  const Owned<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_, asked, nullptr), &std::free);
  if (!reply || reply->owner == XCB_WINDOW_NONE) return 0;
  TellOfEndOf(reply->owner, connection_);
  return reply->owner;
}

void EmbedderWatch::Look() {
  const bool ran = Runs();
  owner_ = FindOwner();
  if (Runs() != ran) changed_();
}

bool EmbedderWatch::nativeEventFilter(const QByteArray& /*eventType*/, void* message,
                                      qintptr* /*result*/) {
  constexpr unsigned kSentByAClient = 0x80;
  const auto* event = static_cast<const xcb_generic_event_t*>(message);
  switch (event->response_type & ~kSentByAClient) {
    case XCB_CLIENT_MESSAGE: {
      const auto* news = static_cast<const xcb_client_message_event_t*>(message);
      if (news->type == manager_ && news->data.data32[1] == selection_) soon_.start();
      break;
    }
    case XCB_DESTROY_NOTIFY:
      if (static_cast<const xcb_destroy_notify_event_t*>(message)->window == owner_) soon_.start();
      break;
    default:
      break;
  }
  return false;
}

}  // namespace tallowin::desktop
