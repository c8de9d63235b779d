#include "softcard/packets/Counters.h"

#include <string>

#include "softcard/tables/Sorted.h"

namespace softcard {

using calls::Kind;

const TableDescription Counters::kDescription = {"counters",
                                                 "counter",
                                                 Origin::kCounted,
                                                 {"of", Kind::kText},
                                                 {{"packets", Kind::kNumber}, {"bytes", Kind::kNumber}}};

Counters::PortCount& Counters::Port(int port) {
  const auto index = static_cast<std::size_t>(port);
  if (index >= ports_.size()) ports_.resize(index + 1);
  return ports_[index];
}

void Counters::Injected(int port, const Way& way, std::size_t in, std::size_t out) {
  const bool port_exists = way.fate != Way::Fate::kDropped || way.drop != Drop::kNoPort;
  if (port_exists) Port(port).in.Add(in);
  Sent(way, in, out);
}

void Counters::Sent(const Way& way, std::size_t in, std::size_t out) {
  if (way.fate == Way::Fate::kDropped) return drops_[static_cast<std::size_t>(way.drop)].Add(in);
  if (way.destination) destinations_[*way.destination].Add(out);
  Port(way.port).out.Add(out);
}

Count Counters::destination(unsigned id) const {
  const Count* const found = destinations_.Find(id);
  return found ? *found : Count();
}

Count Counters::in(int port) const {
  const auto index = static_cast<std::size_t>(port);
  return index < ports_.size() ? ports_[index].in : Count();
}

Count Counters::out(int port) const {
  const auto index = static_cast<std::size_t>(port);
  return index < ports_.size() ? ports_[index].out : Count();
}

std::vector<Row> Counters::Rows(const Ports& ports) const {
  std::vector<Row> rows;
  const auto append = [&](const std::string& what, const Count& count) {
    const auto value = [](uint64_t number) { return calls::Value(static_cast<std::int64_t>(number)); };
    if (count.packets > 0) {
      rows.push_back({&kDescription, calls::ToValue(what), {value(count.packets), value(count.bytes)}});
    }
  };
  for (const auto& [id, count] : Sorted(destinations_)) append("destination " + std::to_string(id), count);
  for (int port = 0; port < static_cast<int>(ports_.size()); ++port) {
    append(ports.Name(port) + " in", in(port));
    append(ports.Name(port) + " out", out(port));
  }
  for (int reason = 0; reason < kDrops; ++reason) {
    append(std::string("drop ") + DropName(static_cast<Drop>(reason)), drops_[static_cast<std::size_t>(reason)]);
  }
  return rows;
}

std::size_t Counters::row_count() const {
  const auto not_zero = [](const Count& count) { return count.packets > 0 ? std::size_t{1} : 0; };
  std::size_t count = destinations_.size();
  for (const PortCount& port : ports_) count += not_zero(port.in) + not_zero(port.out);
  for (const Count& dropped : drops_) count += not_zero(dropped);
  return count;
}

}  // namespace softcard
