#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <stdexcept>

#include "diagnosis/State.h"
#include "diagnosis/WholeFile.h"
#include "tests/scenario/Parsed.h"

namespace {

class ASavedState : public testing::Test {
 protected:
  /// Of a card with a row in every table.
  ASavedState() : path_(testing::TempDir() + "state-" + std::to_string(getpid()) + ".json") {
    diagnosis::Try(
        TheLanguage(), softcard::Card::Get(),
        {{"install-vrf 1", "install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01",
          "install-host 20 vlan=10 lim=cpu mac=02:00:00:00:00:09",
          "install-mpls 4000000000 vlan=10 lim=lag1 mac=02:00:00:00:00:09 labels=16 caps=swap", "init",
          "route 1 2001:db8::/32 20", "label 16 port eth3", "attach eth4 30", "lag lag1 eth5,eth6", "send 20"},
         "install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=100,200 caps=push action=drop"});
    text_ = diagnosis::StateJson(softcard::Card::Get());
  }
  ~ASavedState() override { std::remove(path_.c_str()); }

  /// What reading says of a file with this text; empty when it can be read.
  std::string Complaint(const std::string& text) {
    diagnosis::WriteWhole(path_, text);
    try {
      diagnosis::ReadState(path_);
    } catch (const std::runtime_error& error) {
      return std::string(error.what()).substr(path_.size());
    }
    return "";
  }
  std::string Replaced(const std::string& what, const std::string& by) const {
    std::string text = text_;
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
  }

  const std::string path_;
  std::string text_;
};

}  // namespace

TEST_F(ASavedState, IsReadAsItWasSaved) {
  EXPECT_EQ(Complaint(text_), "");
  diagnosis::Rows expected;
  for (const auto& table : softcard::Card::TableNames()) {
    EXPECT_GT(softcard::Card::Get().RowCount(table), 0U) << table;
    for (const softcard::Row& row : softcard::Card::Get().Rows(table)) expected.push_back(row);
  }
  EXPECT_EQ(softcard::Texts(diagnosis::ReadState(path_)), softcard::Texts(expected));
}

TEST_F(ASavedState, IsRefusedWhenItIsOfAnotherVersion) {
  EXPECT_EQ(Complaint(Replaced("\"version\": 1", "\"version\": 2")),
            ": it has version 2, this command reads version 1; save the state again");
}

TEST_F(ASavedState, IsRefusedWhereverItWasCut) {
  for (std::size_t size = 0; size + 2 < text_.size(); size += 97) {
    EXPECT_EQ(Complaint(text_.substr(0, size)), " is no JSON, or was cut; save the state again") << size;
  }
}

TEST_F(ASavedState, IsRefusedWhenItWasEdited) {
  const std::string edited = ": it has been edited since it was saved; save the state again";
  EXPECT_EQ(Complaint(Replaced("\"mtu\": 1500", "\"mtu\": 1501")), edited);
  EXPECT_EQ(Complaint(Replaced("\n\"initiators\"", "\n\n\"initiators\"")), edited);
  EXPECT_EQ(Complaint(Replaced("\"checksum\": \"", "\"checksum\": \"0")), edited);
}

TEST_F(ASavedState, IsRefusedWhenItIsSomethingElse) {
  EXPECT_EQ(Complaint("{}"), ": it is no saved state; save the state again");
  EXPECT_EQ(Complaint("[1]"), ": it is no saved state; save the state again");
  EXPECT_EQ(Complaint("install-vrf 1"), " is no JSON, or was cut; save the state again");
  EXPECT_EQ(Complaint("{\"format\": \"softcard state\"}"), " lacks what a saved state has; save the state again");
  EXPECT_THROW(diagnosis::ReadState(path_ + ".not"), std::runtime_error);
}

TEST_F(ASavedState, IsRefusedWhenItsValuesAreNone) {
  // With the checksum of what it has.
  const auto sealed = [](const std::string& body) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : body) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return body + ",\n\"checksum\": \"" + digits + "\"}\n";
  };
  const auto body = [](const std::string& text) { return text.substr(0, text.rfind(",\n\"checksum\"")); };
  EXPECT_EQ(Complaint(sealed(body(text_))), "");
  EXPECT_EQ(Complaint(sealed(body(Replaced("\"00:00:5e:00:01:01\"", "\"a mac\"")))),
            ": \"a mac\" is no value of its column; save the state again");
  EXPECT_EQ(Complaint(sealed(body(Replaced("\"mtu\": 1500, ", "")))),
            " lacks what a saved state has; save the state again");
  EXPECT_EQ(Complaint(sealed(body(Replaced("\"mtu\": 1500", "\"mtu\": [1500]")))),
            " lacks what a saved state has; save the state again");
}

TEST(AWholeFile, IsWrittenOrLeftAlone) {
  const std::string path = testing::TempDir() + "whole-" + std::to_string(getpid());
  diagnosis::WriteWhole(path, "first");
  diagnosis::WriteWhole(path, "second");
  std::string text;
  std::ifstream(path) >> text;
  EXPECT_EQ(text, "second");
  EXPECT_THROW(diagnosis::WriteWhole(path + "/below", ""), std::runtime_error);
  EXPECT_THROW(diagnosis::WriteWhole(testing::TempDir(), ""), std::runtime_error);
  struct stat none {};
  EXPECT_NE(stat((path + ".part").c_str(), &none), 0);
  std::remove(path.c_str());
}
