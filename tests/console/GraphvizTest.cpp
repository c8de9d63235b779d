#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "console/Graphviz.h"

namespace {

/// What is said when this stands in Graphviz's place; empty when it draws.
std::string Complaint(const std::string& script) {
  const std::string folder = testing::TempDir() + "dot-" + std::to_string(getpid());
  std::filesystem::create_directory(folder);
  std::ofstream(folder + "/dot") << "#!/bin/sh\n" << script << '\n';
  chmod((folder + "/dot").c_str(), S_IRWXU);
  const std::string path = std::getenv("PATH");
  setenv("PATH", (folder + ':' + path).c_str(), 1);
  std::string complaint;
  try {
    console::Drawn("svg", "digraph {}", 1);
  } catch (const std::runtime_error& error) {
    complaint = error.what();
  }
  setenv("PATH", path.c_str(), 1);
  std::filesystem::remove_all(folder);
  return complaint;
}

}  // namespace

TEST(Graphviz, IsNotWaitedForLongerThanItMayTake) {
  EXPECT_EQ(Complaint("exec sleep 30"),
            "Graphviz did not draw the picture within 1 s; draw one destination, or write a .dot file");
}

TEST(Graphviz, IsToldOfWhenItFails) {
  for (const char* failure : {"exit 1", "kill $$"}) {
    EXPECT_EQ(Complaint(failure), "Graphviz could not draw the picture; a .dot file shows what it was given");
  }
  EXPECT_EQ(Complaint("echo '<svg/>' > \"$3\""), "");
}
