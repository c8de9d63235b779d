#include "serve/Interface.h"

#include <net/if.h>
#include <pcap/pcap.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <stdexcept>

namespace serve {
namespace {

constexpr int kLongest = 65535;   // bytes of a frame
constexpr int kBuffer = 4 << 20;  // bytes of frames that wait to be read
constexpr int kBatch = 64;        // frames, before others have their turn

[[noreturn]] void CannotOpen(const std::string& name, const std::string& reason) {
  throw std::runtime_error("cannot open interface " + name + ": " + reason);
}

std::string WhyNot(int status, pcap_t* handle) {
  switch (status) {
    case PCAP_ERROR_NO_SUCH_DEVICE: return "there is none of this name; ip link shows those that there are";
    case PCAP_ERROR_PERM_DENIED:
    case PCAP_ERROR_PROMISC_PERM_DENIED: return "this takes root, or the capability CAP_NET_RAW";
    case PCAP_ERROR_IFACE_NOT_UP: return "it is down; ip link set up brings it up";
    default: return std::string(pcap_statustostr(status)) + ' ' + pcap_geterr(handle);
  }
}

}  // namespace

const char* StateName(Interface::State state) {
  switch (state) {
    case Interface::State::kUp: return "up";
    case Interface::State::kDown: return "down";
    case Interface::State::kGone: break;
  }
  return "gone";
}

void Interface::Close::operator()(pcap* handle) const { pcap_close(handle); }

Interface::Interface(const std::string& name) : name_(name), handle_(Open(name)), index_(if_nametoindex(name.c_str())) {
  Look();
  count_.changes = 0;
}

Interface::~Interface() = default;

Interface::Handle Interface::Open(const std::string& name) {
  char reason[PCAP_ERRBUF_SIZE] = "";
  Handle handle(pcap_create(name.c_str(), reason));
  if (!handle) CannotOpen(name, reason);
  pcap_set_snaplen(handle.get(), kLongest);
  pcap_set_promisc(handle.get(), 1);
  pcap_set_immediate_mode(handle.get(), 1);
  pcap_set_buffer_size(handle.get(), kBuffer);
  const int status = pcap_activate(handle.get());
  if (status < 0) CannotOpen(name, WhyNot(status, handle.get()));
  if (pcap_datalink(handle.get()) != DLT_EN10MB) CannotOpen(name, "it is no Ethernet interface");
  if (pcap_setdirection(handle.get(), PCAP_D_IN) != 0 || pcap_setnonblock(handle.get(), 1, reason) != 0) {
    CannotOpen(name, pcap_geterr(handle.get()));
  }
  return handle;
}

int Interface::descriptor() const { return handle_ ? pcap_get_selectable_fd(handle_.get()) : -1; }

Interface::Count Interface::count() const {
  Count count = count_;
  pcap_stat stat{};
  if (handle_ && pcap_stats(handle_.get(), &stat) == 0) count.missed += stat.ps_drop;
  return count;
}

void Interface::Receive(const std::function<void(softcard::View)>& take) {
  if (!handle_) return;
  struct Batch {
    Count& count;
    const std::function<void(softcard::View)>& take;
  } batch{count_, take};
  const auto each = [](u_char* user, const pcap_pkthdr* header, const u_char* bytes) {
    auto& [count, each_take] = *reinterpret_cast<Batch*>(user);
    ++count.received;
    if (header->caplen < header->len) {
      ++count.cut;
      return;
    }
    each_take({bytes, header->caplen});
  };
  // What fails here is the interface, which Look() sees.
  pcap_dispatch(handle_.get(), kBatch, each, reinterpret_cast<u_char*>(&batch));
}

void Interface::Send(softcard::View frame) {
  // Not by pcap_inject, which waits for room.
  const bool sent = handle_ && send(pcap_fileno(handle_.get()), frame.data, frame.size, MSG_DONTWAIT) >= 0;
  ++(sent ? count_.sent : count_.lost);
}

bool Interface::IsAnother() const { return handle_ && if_nametoindex(name_.c_str()) != index_; }

bool Interface::Look() {
  const State before = state_;
  const unsigned index = if_nametoindex(name_.c_str());
  if (index != index_) Forget();
  if (index != 0 && !handle_) {
    try {
      handle_ = Open(name_);
      index_ = index;
    } catch (const std::runtime_error&) {
      // It is down or has gone again; the next look shows.
    }
  }
  if (handle_) {
    ifreq request{};
    name_.copy(request.ifr_name, IFNAMSIZ - 1);
    const bool known = ioctl(pcap_fileno(handle_.get()), SIOCGIFFLAGS, &request) == 0;
    state_ = known && (request.ifr_flags & IFF_RUNNING) != 0 ? State::kUp : State::kDown;
  } else {
    state_ = State::kGone;
  }
  if (state_ != before) ++count_.changes;
  return state_ != before;
}

void Interface::Forget() {
  count_.missed = count().missed;
  handle_.reset();
}

}  // namespace serve
