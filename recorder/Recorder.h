#ifndef RECORDER_RECORDER_H
#define RECORDER_RECORDER_H

#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <string>

#include "calls/Event.h"
#include "hal/HalBcmCommon.h"
#include "recorder/File.h"
#include "recorder/Request.h"

namespace recorder {

/// Where a thread is. Only what a request does is noted: neither what a client's callback or another module asks of the
/// platform, nor what the platform asks of itself.
enum class Place { kOutside, kRequest, kPlatform, kClient };

/// While one lives, its thread is there.
class Within {
 public:
  explicit Within(Place place) : outer_(here_) { here_ = place; }
  ~Within() { here_ = outer_; }
  Within(const Within&) = delete;
  Within& operator=(const Within&) = delete;

  static Place Here() { return here_; }

 private:
  static inline thread_local __attribute__((tls_model("initial-exec"))) Place here_ = Place::kOutside;
  const Place outer_;
};

/// What is being thrown, from inside a catch of anything: "std::bad_alloc: std::bad_alloc".
std::string DescribeThrown();

/// The recording of this process. `HAL_CARD_RECORDING` names its file, `HAL_CARD_RECORDING_LIMIT` the size in bytes (or
/// 64k, 10M, 2G) at which a new one is begun, `HAL_CARD_RECORDING_SIGNAL` the signal (a number, USR1 or USR2) that
/// pauses and resumes it. Nothing here throws, changes errno or keeps a request from being made.
class Recorder {
 public:
  /// Never destroyed: the module is called until the process is gone.
  static Recorder& Get();

  /// Whether this process has a recording at all.
  bool is_wanted() const { return wanted_; }
  /// For good.
  void GiveUp() { wanted_ = false; }

  /// From outside: whether what follows on this thread is noted; then Done() has to follow. Another thread's request
  /// that comes meanwhile is not, and a line says so.
  bool Begin() noexcept;
  void Done() noexcept;

  /// The module's first GetInstance().
  void NoteStart() noexcept { starting_ = true; }
  /// `make` gives the request.
  template <typename Make>
  void NoteRequest(const Make& make) noexcept {
    Noting([&] { PutRequest(make()); });
  }
  void NoteRegistration(const std::string& name, bool empty) noexcept;
  /// Null: the request throws, and this is inside a catch of it.
  void NoteResult(const int* result) noexcept;
  /// The end of a start or a registration, which has no result; `threw`: and this is inside a catch.
  void NoteEnd(bool threw) noexcept;
  /// `make` gives the platform call or the log line.
  template <typename Make>
  void Note(const Make& make) noexcept {
    Noting([&] { PutEvent(make()); });
  }
  void NoteNotification(const std::string& name, int destination_id, unsigned port) noexcept;
  /// What this client's callback throws, inside a catch of it.
  void NoteThrow(const std::string& name) noexcept;

  /// The client whose callback is under way, which makes the requests that come; null: none. Returns the one before.
  const std::string* Enter(const std::string* client) noexcept;

  /// A client that is registered while nobody notes it.
  void Remember(const std::string& name, bool empty) noexcept;
  /// The object that holds what the module reads without a call.
  void See(const HalBcmCommon* common) { common_ = common; }

 private:
  Recorder();
  void Pause(bool pause);
  bool OpenFile();
  void PutStanding();
  void PutUnit(unsigned indentation);
  void PutResult(const std::string& text);
  void PutRequest(const Request& request);
  void PutCommon(const Request& request);
  void PutUnnoted();
  void Put(unsigned indentation, std::string_view text);
  void PutEvent(const calls::Event& event);

  template <typename Work>
  void Noting(const Work& work) noexcept {
    const int outer_errno = errno;
    try {
      work();
    } catch (...) {
      ++lost_;
    }
    errno = outer_errno;
  }

  std::string path_;
  std::atomic<bool> wanted_{false};
  std::uint64_t limit_ = UINT64_MAX;
  std::atomic<bool> busy_{false};
  std::atomic<unsigned> missed_{0};  ///< requests of other threads
  std::atomic<const HalBcmCommon*> common_{nullptr};
  std::mutex clients_mutex_;
  std::map<std::string, bool> clients_;  ///< whether empty

  // Of the thread that is being noted.
  File file_;
  bool on_ = true;
  bool starting_ = false;  ///< and no call seen yet
  bool started_ = false;
  unsigned depth_ = 0;  ///< of requests in callbacks
  const std::string* client_ = nullptr;
  std::uint64_t last_ = 0;  ///< microseconds
  std::string buffer_;
  int unit_ = 0;
  std::size_t destinations_ = 0;
  std::map<std::uint32_t, std::string> ports_;  ///< what was told of lim ids
  unsigned lost_ = 0;                           ///< lines for which there was no memory
};

}  // namespace recorder

#endif
