#include "recorder/Recorder.h"

#include <cxxabi.h>
#include <pthread.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <typeinfo>
#include <utility>

#include "recorder/Format.h"

namespace recorder {
namespace {

constexpr std::size_t kMostPorts = 4096;  // whose entries are remembered, so that they are told once

std::atomic<bool> the_pause_wanted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler writes it");

void TogglePause(int) { the_pause_wanted = !the_pause_wanted; }

const char* Setting(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::uint64_t ReadLimit(std::string_view text) {
  std::uint64_t limit = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), limit);
  const std::string_view suffix = text.substr(static_cast<std::size_t>(end - text.data()));
  constexpr std::string_view kSuffixes = "kMG";
  const std::size_t power = suffix.empty() ? 0 : kSuffixes.find(suffix) + 1;
  if (error == std::errc() && limit > 0 && (suffix.empty() || power > 0) && limit < UINT64_MAX >> 10 * power) {
    return limit << 10 * power;
  }
  std::fprintf(stderr,
               "hal_card_recorder: HAL_CARD_RECORDING_LIMIT=%.*s is no size, such as 500000, 64k, 10M or 2G; there is "
               "no limit\n",
               static_cast<int>(text.size()), text.data());
  return UINT64_MAX;
}

void TakeSignal(std::string_view text) {
  int number = text == "USR1" ? SIGUSR1 : text == "USR2" ? SIGUSR2 : 0;
  if (number == 0) std::from_chars(text.data(), text.data() + text.size(), number);
  struct sigaction action {};
  action.sa_handler = TogglePause;
  action.sa_flags = SA_RESTART;
  if (number > 0 && sigaction(number, &action, nullptr) == 0) return;
  std::fprintf(
      stderr,
      "hal_card_recorder: HAL_CARD_RECORDING_SIGNAL=%.*s is no signal, such as USR1, USR2 or 40; the recording "
      "cannot be paused\n",
      static_cast<int>(text.size()), text.data());
}

std::uint64_t Now() {
  using std::chrono::steady_clock;
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now().time_since_epoch()).count());
}

std::int64_t TimeOfDay() {
  using std::chrono::system_clock;
  return std::chrono::duration_cast<std::chrono::microseconds>(system_clock::now().time_since_epoch()).count();
}

std::uint32_t WordOf(limid_t limid) {
  static_assert(sizeof limid == sizeof(std::uint32_t));
  std::uint32_t word = 0;
  std::memcpy(&word, &limid, sizeof word);
  return word;
}

/// The entry of a lim id, found without the platform's comparison: a recorder asks the platform nothing.
template <typename Table>
std::string Entry(const Table& table, limid_t limid) {
  const auto entry =
      std::find_if(table.begin(), table.end(), [&](const auto& row) { return WordOf(row.first) == WordOf(limid); });
  return entry == table.end() ? "none" : std::to_string(entry->second);
}

}  // namespace

std::string DescribeThrown() {
  try {
    throw;
  } catch (const std::exception& exception) {
    return calls::Describe(exception);
  } catch (...) {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    return std::string(type ? type->name() : "foreign exception") + ": no std::exception";
  }
}

Recorder& Recorder::Get() {
  static Recorder* const recorder = new Recorder;
  return *recorder;
}

Recorder::Recorder() : path_(Setting("HAL_CARD_RECORDING")) {
  if (path_.empty()) return;
  wanted_ = true;
  if (*Setting("HAL_CARD_RECORDING_LIMIT")) limit_ = ReadLimit(Setting("HAL_CARD_RECORDING_LIMIT"));
  if (*Setting("HAL_CARD_RECORDING_SIGNAL")) TakeSignal(Setting("HAL_CARD_RECORDING_SIGNAL"));
  // A child that goes on after a fork would write into its parent's recording.
  pthread_atfork(nullptr, nullptr, [] { Recorder::Get().GiveUp(); });
}

bool Recorder::Begin() noexcept {
  if (!wanted_) return false;
  if (busy_.exchange(true)) {
    ++missed_;
    return false;
  }
  Noting([&] {
    if (the_pause_wanted == on_) Pause(on_);
    if (!on_) return;
    if (file_.is_open() && file_.size() > limit_) file_.Close();
    PutUnnoted();
    // Somebody else has been at the records meanwhile.
    const HalBcmCommon* const common = common_;
    if (file_.is_open() && common && common->destination_id_correlators.size() != destinations_) PutStanding();
  });
  if (!on_) busy_ = false;
  return on_;
}

void Recorder::Done() noexcept {
  Noting([&] {
    if (const HalBcmCommon* const common = common_) destinations_ = common->destination_id_correlators.size();
    file_.TellMissing();
  });
  busy_ = false;
}

void Recorder::Pause(bool pause) {
  on_ = !pause;
  if (!file_.is_open()) return;
  Put(0, pause ? "! paused" : "! resumed");
  if (!pause) PutStanding();
}

bool Recorder::OpenFile() {
  if (!file_.Open(path_)) {
    on_ = false;
    wanted_ = false;
    return false;
  }
  Header header = HeaderOfThisMachine(RECORDER_MODULE_VERSION);
  const HalBcmCommon* const common = common_;
  header.unit = unit_ = common ? common->unit : 0;
  header.begun = TimeText(TimeOfDay());
  file_.Write(Text(header));
  last_ = Now();
  if (started_) PutStanding();
  return true;
}

void Recorder::PutStanding() {
  Put(0, "has nothing");
  ports_.clear();
  const HalBcmCommon* const common = common_;
  if (common) {
    for (const auto& [id, record] : common->destination_id_correlators) {
      Put(0, "has destination " + std::to_string(static_cast<unsigned>(id)) +
                 " intf=" + std::to_string(record.intf_id) + " egress=" + std::to_string(record.egress_id));
    }
    destinations_ = common->destination_id_correlators.size();
  }
  const std::lock_guard<std::mutex> lock(clients_mutex_);
  for (const auto& [name, empty] : clients_) Put(0, "has client " + Word(name) + (empty ? " empty" : " notify"));
}

void Recorder::PutUnit(unsigned indentation) {
  const HalBcmCommon* const common = common_;
  if (!common || std::exchange(unit_, common->unit) == common->unit) return;
  Put(indentation, "has unit " + std::to_string(unit_));
}

void Recorder::PutCommon(const Request& request) {
  const HalBcmCommon* const common = common_;
  if (!common) return;
  const unsigned indentation = depth_ == 0 ? 0 : EventIndentation(depth_ - 1);
  PutUnit(indentation);
  if (!NamesAPort(request.operation)) return;
  std::string text =
      "port=" + Entry(common->port_table, request.limid) + " lag=" + Entry(common->lag_table, request.limid);
  std::string& told = ports_[WordOf(request.limid)];
  if (told == text) return;
  Put(indentation, "has lim " + calls::Text(calls::Kind::kLimId, calls::ToValue(request.limid)) + ' ' + text);
  told = std::move(text);
  if (ports_.size() > kMostPorts) ports_.clear();
}

void Recorder::PutUnnoted() {
  if (const unsigned missed = missed_.exchange(0)) {
    Put(0, "! not recorded: " + std::to_string(missed) + " requests of a second thread");
  }
  if (const unsigned lost = std::exchange(lost_, 0)) {
    Put(0, "! not recorded: " + std::to_string(lost) + " lines, for lack of memory");
  }
}

void Recorder::Put(unsigned indentation, std::string_view text) {
  if (!file_.is_open() && !OpenFile()) return;
  const std::uint64_t now = Now();
  buffer_.clear();
  AppendLine(&buffer_, now - last_, indentation, text);
  last_ = now;
  file_.Write(buffer_);
}

void Recorder::PutRequest(const Request& request) {
  if (client_) ++depth_;
  started_ = true;
  if (!file_.is_open() && !OpenFile()) return;
  PutCommon(request);
  if (client_) {
    Put(EventIndentation(depth_ - 1), "client " + Word(*client_) + " calls " + Text(request));
  } else {
    Put(0, Text(request));
  }
}

void Recorder::PutResult(const std::string& text) {
  if (client_) {
    --depth_;
    Put(EventIndentation(depth_), "client " + Word(*client_) + " gets " + text);
  } else {
    Put(kResultIndentation, "=> " + text);
  }
}

void Recorder::NoteResult(const int* result) noexcept {
  Noting([&] { PutResult(result ? std::to_string(*result) : "threw " + DescribeThrown()); });
}

void Recorder::NoteRegistration(const std::string& name, bool empty) noexcept {
  Noting([&] {
    const std::string text = "client " + Word(name) + (empty ? " empty" : " notify");
    if (client_) {
      Put(EventIndentation(depth_), "client " + Word(*client_) + " calls " + text);
    } else {
      Put(0, text);
    }
    if (client_) ++depth_;
  });
}

void Recorder::NoteEnd(bool threw) noexcept {
  Noting([&] {
    starting_ = false;
    if (threw) return PutResult("threw " + DescribeThrown());
    if (client_) --depth_;
  });
}

void Recorder::PutEvent(const calls::Event& event) {
  if (std::exchange(starting_, false)) {
    if (!file_.is_open() && !OpenFile()) return;
    PutUnit(0);
    Put(0, "start");
    started_ = true;
  }
  Put(EventIndentation(depth_), calls::Text(event));
}

void Recorder::NoteNotification(const std::string& name, int destination_id, unsigned port) noexcept {
  Noting([&] {
    Put(EventIndentation(depth_), "client " + Word(name) +
                                      " is told id=" + std::to_string(static_cast<unsigned>(destination_id)) +
                                      " port=" + std::to_string(static_cast<int>(port)));
  });
}

void Recorder::NoteThrow(const std::string& name) noexcept {
  Noting([&] { Put(EventIndentation(depth_), "client " + Word(name) + " threw " + DescribeThrown()); });
}

const std::string* Recorder::Enter(const std::string* client) noexcept { return std::exchange(client_, client); }

void Recorder::Remember(const std::string& name, bool empty) noexcept {
  Noting([&] {
    const std::lock_guard<std::mutex> lock(clients_mutex_);
    clients_[name] = empty;
  });
}

}  // namespace recorder
