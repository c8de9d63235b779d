#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <asio/read_until.hpp>
#include <asio/write.hpp>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include "serve/Connection.h"
#include "serve/ControlSocket.h"
#include "serve/SocketPath.h"
#include "tests/scenario/Parsed.h"
#include "tests/serve/PlainFormat.h"

namespace serve {
namespace {

using Stream = asio::local::stream_protocol;

/// A client that waits for nothing: the socket's side takes its turn in between.
class TestClient {
 public:
  TestClient(asio::io_context& events, const std::string& path) : events_(events), socket_(events) {
    socket_.connect(Stream::endpoint(path));
    socket_.non_blocking(true);
  }

  void Say(const std::string& text) { asio::write(socket_, asio::buffer(text)); }
  void SayNoMore() { socket_.shutdown(Stream::socket::shutdown_send); }
  void Leave() { socket_.close(); }
  /// What has been said when it holds `end`; what there is when no more comes.
  std::string HearUpTo(const std::string& end) {
    for (int turns = 0; heard_.find(end) == std::string::npos && turns < 100'000; ++turns) {
      events_.poll();
      events_.restart();
      char buffer[65536];
      std::error_code error;
      heard_.append(buffer, socket_.read_some(asio::buffer(buffer), error));
      if (error == asio::error::eof || error == asio::error::connection_reset) break;
    }
    const std::size_t at = heard_.find(end);
    const std::size_t size = at == std::string::npos ? heard_.size() : at + end.size();
    std::string said = heard_.substr(0, size);
    heard_.erase(0, size);
    return said;
  }

 private:
  asio::io_context& events_;
  Stream::socket socket_;
  std::string heard_;
};

class ControlSocketTest : public testing::Test {
 protected:
  ControlSocketTest() {
    std::string folder = testing::TempDir() + "control-XXXXXX";
    folder_ = mkdtemp(folder.data());
    path_ = folder_ + "/socket";
  }
  ~ControlSocketTest() override {
    control_.reset();
    unlink(path_.c_str());
    EXPECT_EQ(rmdir(folder_.c_str()), 0) << "something was left behind in " << folder_;
  }

  void Open() { control_.emplace(events_, path_, begin_); }
  std::string WhyNot(const std::string& path) {
    try {
      const ControlSocket other(events_, path, begin_);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }

  std::string folder_;
  std::string path_;
  const Formats formats_ = PlainFormat::All();
  scenario::Session session_{TheLanguage(), softcard::Card::Get(), {}};
  const ControlSocket::NewConversation begin_ = [this](const std::string& client) {
    return std::make_unique<Conversation>(session_, TheLanguage(), formats_, client);
  };
  asio::io_context events_{1};
  std::optional<ControlSocket> control_;
};

TEST_F(ControlSocketTest, IsTheUsersAloneAndGoesWithItsCard) {
  Open();
  struct stat file {};
  ASSERT_EQ(stat(path_.c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 07777, 0600U);
  control_.reset();
  EXPECT_NE(stat(path_.c_str(), &file), 0);
}

TEST_F(ControlSocketTest, LeavesAnotherCardsSocketThatTookItsPlace) {
  Open();
  unlink(path_.c_str());
  std::optional<ControlSocket> other;
  other.emplace(events_, path_, begin_);
  control_.reset();
  EXPECT_EQ(access(path_.c_str(), F_OK), 0);
}

TEST_F(ControlSocketTest, IsRefusedWhereALivingCardHasItAndTakenFromADeadOne) {
  Open();
  EXPECT_EQ(WhyNot(path_), "cannot make the control socket " + path_ +
                               ": a card that is running has it; name another path, or end that card");
  control_.reset();
  { Stream::acceptor left(events_, Stream::endpoint(path_)); }
  ASSERT_EQ(access(path_.c_str(), F_OK), 0);
  Open();
  TestClient client(events_, path_);
  client.Say("show vrfs\n");
  EXPECT_EQ(client.HearUpTo("end 0\n"), "end 0\n");
}

TEST_F(ControlSocketTest, SaysWhyItCannotBeMade) {
  std::ofstream(path_) << "a file";
  EXPECT_EQ(WhyNot(path_),
            "cannot make the control socket " + path_ + ": there is a file that is no socket; name another path");
  EXPECT_EQ(WhyNot(folder_ + "/no/folder"),
            "cannot make the control socket " + folder_ +
                "/no/folder: No such file or directory; name a path in a folder that exists and may be written");
  EXPECT_EQ(WhyNot(std::string(200, 'x')).substr(0, 73),
            "the path of a socket has at most 107 bytes, and this one has 200: xxxxxxx");
}

TEST_F(ControlSocketTest, AnswersInTheOrderOfTheLinesHoweverTheyCome) {
  Open();
  TestClient client(events_, path_);
  client.Say("install-vrf 1\r\ninstall-vrf 2\ninst");
  EXPECT_EQ(client.HearUpTo("2: 0\nend 0\n"), "> install-vrf 1: 0\nend 0\n> install-vrf 2: 0\nend 0\n");
  client.Say("all-vrf 3\n");
  EXPECT_EQ(client.HearUpTo("end 0\n"), "> install-vrf 3: 0\nend 0\n");
}

TEST_F(ControlSocketTest, WhoSaysNoMoreGetsTheLastAnswer) {
  Open();
  TestClient client(events_, path_);
  client.Say("install-vrf 1\ninstall-vrf 2");
  client.SayNoMore();
  EXPECT_EQ(client.HearUpTo("nothing ends so"), "> install-vrf 1: 0\nend 0\n> install-vrf 2: 0\nend 0\n");
}

TEST_F(ControlSocketTest, WhoHangsFloodsOrDiesDisturbsNobody) {
  Open();
  TestClient half(events_, path_), deaf(events_, path_), dying(events_, path_), client(events_, path_);
  half.Say("install-vr");
  dying.Say("for I in 1..2\ninstall-vrf $I\nend\ninstall-vrf");
  dying.Leave();
  // Says and never listens, until it is no longer read from.
  const std::string flood(1000, '\n');
  std::size_t said = 0;
  EXPECT_THROW(
      for (; said < 100'000'000; said += flood.size()) {
        deaf.Say(flood);
        events_.poll();
        events_.restart();
      },
      std::system_error);
  EXPECT_LT(said, 10'000'000U);
  client.Say("install-vrf 9\n");
  EXPECT_EQ(client.HearUpTo("end 0\n"), "> install-vrf 9: 0\nend 0\n");
}

TEST_F(ControlSocketTest, WhoSaysALineThatIsTooLongIsLeft) {
  Open();
  TestClient client(events_, path_);
  const std::string part(1000, 'x');
  std::size_t said = 0;
  try {
    for (; said < 10 * ControlSocket::kLongestLine; said += part.size()) {
      client.Say(part);
      events_.poll();
      events_.restart();
    }
  } catch (const std::system_error&) {
    EXPECT_GT(said, ControlSocket::kLongestLine);
  }
  EXPECT_EQ(client.HearUpTo("end 2\n"), "error: a line has more than 1 MiB\nend 2\n");
  EXPECT_EQ(client.HearUpTo("more"), "") << "it is gone";
}

TEST_F(ControlSocketTest, MoreClientsThanItTakesAreToldSoUntilOneLeaves) {
  Open();
  std::vector<std::unique_ptr<TestClient>> clients;
  for (unsigned i = 0; i < ControlSocket::kMostClients; ++i) {
    clients.push_back(std::make_unique<TestClient>(events_, path_));
    clients.back()->Say("\n");
    ASSERT_EQ(clients.back()->HearUpTo("end 0\n"), "end 0\n");
  }
  TestClient surplus(events_, path_);
  EXPECT_EQ(surplus.HearUpTo("end 2\n"), "error: 64 clients are connected already\nend 2\n");
  clients.pop_back();
  events_.poll();
  TestClient next(events_, path_);
  next.Say("\n");
  EXPECT_EQ(next.HearUpTo("end 0\n"), "end 0\n");
}

/// The other side of a connection has a thread of its own.
class ConnectionTest : public ControlSocketTest {
 protected:
  ~ConnectionTest() override { End(); }

  void Begin() {
    Open();
    thread_ = std::thread([this] {
      const auto stay = asio::make_work_guard(events_);
      events_.run();
    });
  }
  void End() {
    events_.stop();
    if (thread_.joinable()) thread_.join();
  }
  std::string WhyNotConnected(const std::string& path, const std::string& format = "text") {
    try {
      Formats formats = PlainFormat::All();
      formats[format] = std::make_unique<PlainFormat>();
      const Connection card(path, format, formats);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  }

  std::thread thread_;
};

TEST_F(ConnectionTest, AsksLineByLine) {
  Begin();
  Connection card(path_, "other", formats_);
  std::string said;
  const auto keep = [&said](std::string_view line) { said += line; };
  EXPECT_EQ(card.Ask("install-vrf 1", keep), Ending::kDone);
  EXPECT_EQ(card.Ask("expect result 3", keep), Ending::kFailed);
  EXPECT_EQ(card.Ask("nonsense", [](std::string_view) {}), Ending::kUnusable);
  EXPECT_EQ(card.Ask("for I in 1..2", keep), Ending::kMore);
  EXPECT_EQ(said, "> install-vrf 1: 0\n- found:    0\n");
}

TEST_F(ConnectionTest, AWordThatChoosesAFormatIsNotSaid) {
  Begin();
  Connection card(path_, "text", formats_);
  std::string said;
  const auto keep = [&said](std::string_view line) { said += line; };
  EXPECT_EQ(card.Ask(" other ", keep), Ending::kUnusable);
  EXPECT_EQ(said.substr(0, 36), "error: \"other\" is no statement: it c");
  EXPECT_EQ(card.Ask("init", keep), Ending::kDone) << "it goes on in the format that it has";
  EXPECT_EQ(card.Ask("expect trace", keep), Ending::kMore);
  EXPECT_EQ(card.Ask("other", keep), Ending::kMore) << "a line of the trace";
  EXPECT_EQ(card.Ask("end", keep), Ending::kFailed);
}

TEST_F(ConnectionTest, SaysThatThereIsNoCard) {
  EXPECT_EQ(WhyNotConnected(path_), "no card answers at " + path_ +
                                        ": No such file or directory; start one with softcard serve, or name its "
                                        "socket");
  EXPECT_EQ(WhyNotConnected(std::string(200, 'x')).substr(0, 32), "the path of a socket has at most");
}

TEST_F(ConnectionTest, SaysWhatARefusingCardSays) {
  Begin();
  const std::string said = "the card at " + path_ + " says: client 1:1:1: error: unknown request \"nonsense\"";
  EXPECT_EQ(WhyNotConnected(path_, "nonsense").substr(0, said.size()), said);
}

TEST_F(ConnectionTest, SaysThatTheCardLeft) {
  Stream::acceptor acceptor(events_, Stream::endpoint(path_));
  std::thread card([&] {
    Stream::socket client(events_);
    acceptor.accept(client);
    std::string heard;
    asio::read_until(client, asio::dynamic_buffer(heard), '\n');
    asio::write(client, asio::buffer(std::string("end 0\n")));
    asio::read_until(client, asio::dynamic_buffer(heard), "show vrfs\n");
    asio::write(client, asio::buffer(std::string("half an ans")));
  });
  Connection connection(path_, "text", formats_);
  try {
    connection.Ask("show vrfs", [](std::string_view) {});
    FAIL() << "half an answer is none";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "the card at " + path_ + " left before its answer's end: it has been ended");
  }
  card.join();
}

TEST(SocketPathTest, IsInTheUsersFolderForSuchThings) {
  setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
  EXPECT_EQ(DefaultSocket("--socket"), "/run/user/7/softcard.sock");
}

}  // namespace
}  // namespace serve
