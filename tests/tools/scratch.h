// What the tests of the program share: files of their own, and its complaints as text.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "kit/bytes.h"
#include "tools/pipeline/user_error.h"

namespace vrk::test {

// A directory of its own for every test and process, gone afterwards.
class scratch : public testing::Test {
 protected:
  scratch()
      : dir_(std::filesystem::path(testing::TempDir()) /
             (testing::UnitTest::GetInstance()->current_test_info()->name() + ("." + std::to_string(getpid())))) {
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
  }
  ~scratch() override { std::filesystem::remove_all(dir_); }

  std::string path(const std::string& name) const { return (dir_ / name).string(); }
  std::string save(const std::string& name, const std::string& data) const {
    std::filesystem::remove(path(name));  // some file systems write a file out at once when it is overwritten
    std::ofstream(path(name), std::ios::binary) << data;
    return path(name);
  }
  std::string save(const std::string& name, const kit::bytes& data) const {
    return save(name, std::string(data.begin(), data.end()));
  }
  static std::string load(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  std::filesystem::path dir_;
};

// What the program would say; empty when all goes well.
inline std::string complaint(const std::function<void()>& work) {
  try {
    work();
  } catch (const tool::user_error& error) {
    return error.what();
  } catch (const CLI::ParseError& error) {
    return error.what();
  }
  return {};
}

}  // namespace vrk::test
