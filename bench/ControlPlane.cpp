// What it takes to bring a control plane's routes onto the card: control_plane FILE, a stream that a real zebra wrote.
// With each step its processor time, and what it asked of the module: the stream from the beginning, told once more
// unchanged, one neighbour's address, everything forgotten.
#include <malloc.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "router/Fpm.h"
#include "router/Netlink.h"
#include "router/Router.h"
#include "softcard/Card.h"

namespace {

constexpr std::size_t kChunk = 65536;  // as much as is read from a socket at a time

/// Tells the stream as it comes from a socket.
void Tell(const std::vector<unsigned char>& stream, router::Router& router) {
  router::Unread unread;
  std::vector<router::Told> told;
  const auto each = [&](const unsigned char* messages, std::size_t size) {
    told.clear();
    router::ReadMessages(messages, size, &told, &unread);
    router.Hear(told);
  };
  for (std::size_t begin = 0, end = 0; end < stream.size();) {
    end = std::min(stream.size(), end + kChunk);
    begin += router::ReadFrames(stream.data() + begin, end - begin, each);
    router.Settle();
  }
}

double Megabytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

template <typename Work>
void Step(const char* name, router::Router& router, const Work& work) {
  const std::uint64_t requests = router.requests();
  const std::clock_t begin = std::clock();
  work();
  const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  std::printf("%-26s %9.3f s %11.0f routes/s %6llu requests %7.1f MB\n", name, seconds,
              static_cast<double>(router.route_count()) / seconds,
              static_cast<unsigned long long>(router.requests() - requests), Megabytes());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: control_plane FILE, the stream of a forwarding plane manager\n");
    return 2;
  }
  std::ifstream file(argv[1], std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "control_plane: cannot read %s\n", argv[1]);
    return 2;
  }
  const std::vector<unsigned char> stream{std::istreambuf_iterator<char>(file), {}};

  softcard::Card& card = softcard::Card::Get();
  softcard::CardDescription description;
  description.routes = 1'100'000;
  card.Reset(description);
  const softcard::Record silence(card.log(), softcard::CallLog::Recording::kNothing);
  router::Router router(*HalL3MplsEncapsulationInterface::GetInstance(), card.tables(), softcard::LimId("cpu"),
                        [](const std::string& what) { std::fprintf(stderr, "%s\n", what.c_str()); });
  constexpr unsigned kIfindex = 2;  // the one that the streams are about
  router.SetInterface(kIfindex, {softcard::LimId("eth1"), softcard::LimId("vlan100"), 0, 1500, {0, 0, 0x5E, 0, 1, 1}});
  std::printf("%.1f MB without a route\n", Megabytes());

  Step("told", router, [&] { Tell(stream, router); });
  Step("told again, unchanged", router, [&] {
    router.Begin();
    Tell(stream, router);
    router.Sweep();
  });
  const unsigned char address[] = {203, 0, 113, 101};
  Step("a neighbour's address", router, [&] {
    router.Learn({kIfindex, softcard::IpAddress::From(softcard::IpAddress::Version::k4, address)}, {2, 0, 0, 0, 0, 1});
  });
  std::printf("%zu routes on the card\n", static_cast<std::size_t>(card.tables().routes.count()));
  router.Begin();
  Step("all gone", router, [&] { router.Sweep(); });
  std::printf("%zu routes on the card\n", static_cast<std::size_t>(card.tables().routes.count()));
}
