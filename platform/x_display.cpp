#include "platform/x_display.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/uio.h>

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <type_traits>

namespace platform {
namespace {

// What is used of the X protocol, version 11, and of its extension for input devices, version 2.
// A request's length is filled in when it is sent.

struct QueryPointer {
  std::uint8_t opcode = 38, unused = 0;
  std::uint16_t length = 0;
  std::uint32_t window;
};
struct PointerReply {
  std::uint8_t header[8];
  std::uint32_t root, child;
  std::int16_t root_x, root_y, window_x, window_y;
  std::uint16_t mask;  // modifiers and the first five buttons
  std::uint16_t unused;
};
static_assert(offsetof(PointerReply, mask) == 24);
constexpr unsigned kShift = 0x1, kNumLock = 0x10;  // Num Lock is the second modifier everywhere
constexpr unsigned kLeft = 0x100, kMiddle = 0x200, kRight = 0x400;

struct QueryKeymap {
  std::uint8_t opcode = 44, unused = 0;
  std::uint16_t length = 0;
};
struct KeymapReply {
  std::uint8_t header[8];
  std::uint8_t keys[32];  // a bit for each key
};

struct QueryExtension {
  std::uint8_t opcode = 98, unused = 0;
  std::uint16_t length = 0;
  std::uint16_t name_length = 15, unused2 = 0;
  char name[16] = "XInputExtension";
};
struct ExtensionReply {
  std::uint8_t header[8];
  std::uint8_t present;
  std::uint8_t opcode;
  std::uint8_t unused[22];
};

struct GetKeyboardMapping {
  std::uint8_t opcode = 101, unused = 0;
  std::uint16_t length = 0;
  std::uint8_t first, count;
  std::uint16_t unused2 = 0;
};
struct MappingReply {
  std::uint8_t type;
  std::uint8_t columns;
  std::uint16_t sequence;
  std::uint32_t length;
  std::uint8_t unused[24];
  // followed by `length` symbols
};
static_assert(sizeof(MappingReply) == 32);

struct Bell {
  std::uint8_t opcode = 104;
  std::int8_t percent = 0;  // as loud as the user has set it
  std::uint16_t length = 0;
};

struct QueryInputVersion {
  std::uint8_t opcode, minor_opcode = 47;
  std::uint16_t length = 0;
  std::uint16_t major_version = 2, minor_version = 0;
};
struct QueryInputPointer {
  std::uint8_t opcode, minor_opcode = 40;
  std::uint16_t length = 0;
  std::uint32_t window;
  std::uint16_t device = 2;  // the pointer that all mice move
  std::uint16_t unused = 0;
};
struct InputPointerReply {
  std::uint8_t header[34];
  std::uint16_t button_words;
  std::uint8_t modifiers[20];
  std::uint32_t buttons;  // a bit for each, in the first of these words; a tenth is rare
};
static_assert(offsetof(InputPointerReply, buttons) == 56);
constexpr unsigned kFirstExtra = 8, kSecondExtra = 9;  // 4 to 7 are wheels

struct Event {
  std::uint8_t type;  // the highest bit tells that another program made it
};
constexpr unsigned kMappingNotify = 34;

// What is used of the XCB library.

struct Setup {
  std::uint8_t unused[34];
  std::uint8_t first_key, last_key;
  std::uint8_t unused2[4];
};
static_assert(sizeof(Setup) == 40);

struct Screen {
  std::uint32_t root;
};
struct ScreenIterator {
  const Screen* data;
  int remaining;
  int index;
};

struct Protocol {
  std::size_t part_count;
  void* extension;
  std::uint8_t opcode;
  std::uint8_t has_no_reply;
};

struct Xcb {
  xcb_connection_t* (*connect)(const char* name, int* screen) = nullptr;
  int (*connection_has_error)(xcb_connection_t*) = nullptr;
  void (*disconnect)(xcb_connection_t*) = nullptr;
  const Setup* (*get_setup)(xcb_connection_t*) = nullptr;
  ScreenIterator (*setup_roots_iterator)(const Setup*) = nullptr;
  Event* (*poll_for_event)(xcb_connection_t*) = nullptr;
  unsigned (*send_request)(xcb_connection_t*, int flags, iovec*, const Protocol*) = nullptr;
  void* (*wait_for_reply)(xcb_connection_t*, unsigned sequence, void** error) = nullptr;
  int (*flush)(xcb_connection_t*) = nullptr;
};

/// The library, which then stays for the life of the process; null where it is not installed.
const Xcb* Library() {
  static Xcb xcb;
  static const bool loaded = [] {
    void* library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return false;
    const auto find = [library](auto*& function, const char* name) {
      function =
          reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
      return function != nullptr;
    };
    return find(xcb.connect, "xcb_connect") &&
           find(xcb.connection_has_error, "xcb_connection_has_error") &&
           find(xcb.disconnect, "xcb_disconnect") && find(xcb.get_setup, "xcb_get_setup") &&
           find(xcb.setup_roots_iterator, "xcb_setup_roots_iterator") &&
           find(xcb.poll_for_event, "xcb_poll_for_event") &&
           find(xcb.send_request, "xcb_send_request") &&
           find(xcb.wait_for_reply, "xcb_wait_for_reply") && find(xcb.flush, "xcb_flush");
  }();
  return loaded ? &xcb : nullptr;
}

/// Sends a request and returns its number, by which its reply is received.
template <class Request>
unsigned Send(xcb_connection_t* connection, Request request, bool has_reply = true) {
  static_assert(sizeof request % 4 == 0);
  iovec parts[3] = {{}, {}, {&request, sizeof request}};  // the library uses the first two itself
  const Protocol protocol{1, nullptr, request.opcode, static_cast<std::uint8_t>(!has_reply)};
  return Library()->send_request(connection, 0, &parts[2], &protocol);
}

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

/// Null for an error, and where the display has died. Where replies of a type differ in length,
/// the caller looks before it reads beyond 32 bytes.
template <class Reply>
Owned<Reply> Receive(xcb_connection_t* connection, unsigned sequence) {
  void* error = nullptr;
  Owned<Reply> reply{static_cast<Reply*>(Library()->wait_for_reply(connection, sequence, &error))};
  std::free(error);
  return reply;
}

/// Writing to a display that has died, if only since it was last looked at, raises SIGPIPE, which
/// would end the process: while one of these lives, the thread does not get it.
class NoBrokenPipe {
 public:
  NoBrokenPipe() {
    sigemptyset(&pipe_);
    sigaddset(&pipe_, SIGPIPE);
    sigset_t pending;
    sigpending(&pending);
    was_pending_ = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
  }
  NoBrokenPipe(const NoBrokenPipe&) = delete;
  NoBrokenPipe& operator=(const NoBrokenPipe&) = delete;
  ~NoBrokenPipe() {
    const timespec now{};
    if (!was_pending_) sigtimedwait(&pipe_, nullptr, &now);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }

 private:
  sigset_t pipe_, before_;
  bool was_pending_;
};

}  // namespace

void XDisplay::Disconnect::operator()(xcb_connection_t* connection) const {
  const NoBrokenPipe guard;
  Library()->disconnect(connection);
}

XDisplay& XDisplay::Inst() {
  static XDisplay display;
  return display;
}

bool XDisplay::Connect() {
  const Xcb* xcb = Library();
  if (xcb == nullptr) return false;
  const auto is_dead = [&] { return xcb->connection_has_error(connection_.get()) != 0; };
  bool stale = false;
  if (connection_ == nullptr || is_dead()) {
    int screen = 0;
    connection_.reset(xcb->connect(nullptr, &screen));
    if (!is_dead()) Explore();
    stale = true;
  }
  while (const Owned<Event> event{xcb->poll_for_event(connection_.get())}) {
    stale |= (event->type & 0x7fU) == kMappingNotify;
  }
  if (stale && !is_dead()) ReadKeyMap();
  if (!is_dead()) return true;
  connection_.reset();
  return false;
}

void XDisplay::Explore() {
  const Xcb* xcb = Library();
  xcb_connection_t* connection = connection_.get();
  const ScreenIterator screens = xcb->setup_roots_iterator(xcb->get_setup(connection));
  root_ = screens.remaining > 0 ? screens.data->root : 0;
  input_opcode_ = 0;
  const auto extension = Receive<ExtensionReply>(connection, Send(connection, QueryExtension{}));
  if (extension == nullptr || extension->present == 0) return;
  const QueryInputVersion version{.opcode = extension->opcode};
  if (Receive<ExtensionReply>(connection, Send(connection, version)) == nullptr) return;
  input_opcode_ = extension->opcode;
}

void XDisplay::ReadKeyMap() {
  const Setup* setup = Library()->get_setup(connection_.get());
  const GetKeyboardMapping request{
      .first = setup->first_key,
      .count = static_cast<std::uint8_t>(setup->last_key - setup->first_key + 1)};
  const auto mapping = Receive<MappingReply>(connection_.get(), Send(connection_.get(), request));
  if (mapping == nullptr) return;
  const auto* symbols = reinterpret_cast<const std::uint32_t*>(mapping.get() + 1);
  key_map_ = MakeKeyMap({symbols, mapping->length}, mapping->columns, setup->first_key);
}

bool XDisplay::IsThere() {
  const std::lock_guard lock(mutex_);
  const NoBrokenPipe guard;
  return Connect();
}

void XDisplay::RingBell() {
  const std::lock_guard lock(mutex_);
  const NoBrokenPipe guard;
  if (!Connect()) return;
  Send(connection_.get(), Bell{}, false);
  Library()->flush(connection_.get());
}

std::bitset<256> XDisplay::KeysDown() {
  std::bitset<256> down;
  const std::lock_guard lock(mutex_);
  const NoBrokenPipe guard;
  if (!Connect()) return down;
  // All requests before the first reply: one round trip.
  xcb_connection_t* connection = connection_.get();
  const unsigned pointer_at = Send(connection, QueryPointer{.window = root_});
  const unsigned keys_at = Send(connection, QueryKeymap{});
  unsigned buttons = 0;
  if (input_opcode_ != 0) {
    const QueryInputPointer request{.opcode = input_opcode_, .window = root_};
    const auto reply = Receive<InputPointerReply>(connection, Send(connection, request));
    if (reply != nullptr && reply->button_words > 0) buttons = reply->buttons;
  }
  const auto pointer = Receive<PointerReply>(connection, pointer_at);
  const auto keys = Receive<KeymapReply>(connection, keys_at);
  if (pointer == nullptr || keys == nullptr) return down;

  const unsigned mask = pointer->mask;
  const bool num_lock = ((mask & kNumLock) != 0) != ((mask & kShift) != 0);
  for (std::size_t key = 0; key < key_map_.size(); ++key) {
    if ((keys->keys[key / 8] >> (key % 8) & 1U) == 0) continue;
    down.set(num_lock ? key_map_[key].num_lock_code : key_map_[key].code);
  }
  down.reset(0);  // keys without a code
  down.set(0x01, (mask & kLeft) != 0);
  down.set(0x02, (mask & kRight) != 0);
  down.set(0x04, (mask & kMiddle) != 0);
  down.set(0x05, (buttons >> kFirstExtra & 1U) != 0);
  down.set(0x06, (buttons >> kSecondExtra & 1U) != 0);
  down.set(0x10, down[0xA0] || down[0xA1]);  // either Shift, Control and Alt
  down.set(0x11, down[0xA2] || down[0xA3]);
  down.set(0x12, down[0xA4] || down[0xA5]);
  return down;
}

}  // namespace platform
