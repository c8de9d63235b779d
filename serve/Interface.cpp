#include "serve/Interface.h"

#include <net/if.h>
#include <pcap/pcap.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace serve {
namespace {

constexpr int kLongest = 65535;       // bytes of a frame
constexpr int kRing = 4 << 20;        // bytes of frames that wait to be read
constexpr int kHeaders = 14 + 2 * 4;  // of Ethernet with two tags, which no MTU counts

[[noreturn]] void CannotOpen(const std::string& name, const std::string& reason) {
  throw std::runtime_error("cannot open interface " + name + ": " + reason);
}

/// 0 when there is none of this name.
int Mtu(const std::string& name) {
  const int any = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  const bool known = any >= 0 && ioctl(any, SIOCGIFMTU, &request) == 0;
  if (any >= 0) close(any);
  return known ? request.ifr_mtu : 0;
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

Interface::Interface(const std::string& name) : name_(name) {
  Open();
  Look();
  count_.changes = 0;
}

Interface::~Interface() = default;

void Interface::Open() {
  char reason[PCAP_ERRBUF_SIZE] = "";
  Handle handle(pcap_create(name_.c_str(), reason));
  if (!handle) CannotOpen(name_, reason);
  // The ring has as much room for each frame as for the longest, so that is asked for as it can come.
  mtu_ = Mtu(name_);
  pcap_set_snaplen(handle.get(), mtu_ > 0 ? std::min(mtu_ + kHeaders, kLongest) : kLongest);
  pcap_set_promisc(handle.get(), 1);
  pcap_set_immediate_mode(handle.get(), 1);
  pcap_set_buffer_size(handle.get(), kRing);
  const int status = pcap_activate(handle.get());
  if (status < 0) CannotOpen(name_, WhyNot(status, handle.get()));
  if (pcap_datalink(handle.get()) != DLT_EN10MB) CannotOpen(name_, "it is no Ethernet interface");
  if (pcap_setdirection(handle.get(), PCAP_D_IN) != 0 || pcap_setnonblock(handle.get(), 1, reason) != 0) {
    CannotOpen(name_, pcap_geterr(handle.get()));
  }
  handle_ = std::move(handle);
  index_ = if_nametoindex(name_.c_str());
}

int Interface::descriptor() const { return handle_ ? pcap_get_selectable_fd(handle_.get()) : -1; }

Interface::Count Interface::count() const {
  Count count = count_;
  pcap_stat stat{};
  if (handle_ && pcap_stats(handle_.get(), &stat) == 0) count.missed += stat.ps_drop;
  return count;
}

int Interface::Receive(const std::function<void(softcard::View)>& take) {
  if (!handle_) return -1;
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
  return pcap_dispatch(handle_.get(), kBatch, each, reinterpret_cast<u_char*>(&batch));
}

void Interface::Send(softcard::View frame) {
  leaving_[leaving_count_++].assign(frame.data, frame.data + frame.size);
  if (leaving_count_ == kBatch) Flush();
}

void Interface::Flush() {
  std::array<iovec, kBatch> bytes;
  std::array<mmsghdr, kBatch> frames{};
  for (unsigned i = 0; i < leaving_count_; ++i) {
    bytes[i] = {leaving_[i].data(), leaving_[i].size()};
    frames[i].msg_hdr.msg_iov = &bytes[i];
    frames[i].msg_hdr.msg_iovlen = 1;
  }
  for (unsigned done = 0; done < leaving_count_;) {
    // Not by libpcap, which sends one by one and waits for room.
    const int sent =
        handle_ ? sendmmsg(pcap_fileno(handle_.get()), &frames[done], leaving_count_ - done, MSG_DONTWAIT) : -1;
    if (sent <= 0) {
      ++count_.lost, ++done;
    } else {
      count_.sent += static_cast<unsigned>(sent), done += static_cast<unsigned>(sent);
    }
  }
  leaving_count_ = 0;
}

bool Interface::IsAnother() const { return handle_ && (if_nametoindex(name_.c_str()) != index_ || Mtu(name_) != mtu_); }

bool Interface::Look() {
  const State before = state_;
  if (IsAnother()) Forget();
  if (!handle_ && if_nametoindex(name_.c_str()) != 0) {
    try {
      Open();
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
