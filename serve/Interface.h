#ifndef SERVE_INTERFACE_H
#define SERVE_INTERFACE_H

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "softcard/packets/Frame.h"

struct pcap;

namespace serve {

/// A network interface that frames are read from and written to, whoever has it. What it sends itself it does not read.
/// A tag that the system keeps beside the frame stands in it again.
class Interface {
 public:
  enum class State { kUp, kDown, kGone };

  struct Count {
    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    std::uint64_t lost = 0;     ///< that could not be sent: too long, no room, no link
    std::uint64_t cut = 0;      ///< that were longer than the MTU allows; they are dropped
    std::uint64_t missed = 0;   ///< that came faster than they were read
    std::uint64_t changes = 0;  ///< of the state
  };

  /// Throws std::runtime_error with the reason and the remedy when it cannot be opened.
  explicit Interface(const std::string& name);
  ~Interface();
  Interface(const Interface&) = delete;
  Interface& operator=(const Interface&) = delete;

  const std::string& name() const { return name_; }
  State state() const { return state_; }
  Count count() const;
  /// Becomes readable when frames come; -1 when the interface is gone.
  int descriptor() const;

  /// Hands on frames that have come, a batch at most. How many; less than 0 when it is down or has gone, and its
  /// descriptor readable all the time.
  int Receive(const std::function<void(softcard::View)>& take);
  /// They leave with Flush(), or once there are as many as a batch.
  void Send(softcard::View frame);
  void Flush();

  /// Whether the one that is open has gone or carries longer frames now, and with it the use of its descriptor.
  bool IsAnother() const;
  /// Looks what has become of it; whether that is something else than before. One that came back is opened again, and
  /// has another descriptor.
  bool Look();

 private:
  struct Close {
    void operator()(pcap* handle) const;
  };
  using Handle = std::unique_ptr<pcap, Close>;

  static constexpr unsigned kBatch = 64;  // frames, before others have their turn

  void Open();
  void Forget();

  const std::string name_;
  Handle handle_;
  unsigned index_ = 0;
  int mtu_ = 0;  ///< when it was opened
  std::array<softcard::Bytes, kBatch> leaving_;
  unsigned leaving_count_ = 0;
  State state_ = State::kUp;
  Count count_;
};

/// "up", "down", "gone".
const char* StateName(Interface::State state);

}  // namespace serve

#endif
