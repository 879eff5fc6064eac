#include "tools/ABatchGenerate.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <sstream>
#include <system_error>
#include <thread>

namespace ppdforge {

namespace {

constexpr const char* kProgram = "ppdforge";
constexpr std::size_t kBarWidth = 30;

struct Outcome {
  int status = 0;
  std::string messages;
};

// Draws "ppdforge: [#####.....] 5/20" over the previous bar.
class ProgressBar {
 public:
  ProgressBar(std::ostream& err, std::size_t total, bool enabled)
      : err_(err), total_(total), enabled_(enabled) {
    Draw(0);
  }

  void Advance() {
    if (!enabled_) return;
    std::lock_guard<std::mutex> lock(mutex_);
    Draw(++done_);
  }

  void Erase() {
    if (!enabled_) return;
    err_ << "\r\033[K" << std::flush;
  }

 private:
  void Draw(std::size_t done) {
    if (!enabled_) return;
    const std::size_t filled = total_ == 0 ? kBarWidth : done * kBarWidth / total_;
    err_ << '\r' << kProgram << ": [" << std::string(filled, '#')
         << std::string(kBarWidth - filled, '.') << "] " << done << '/' << total_ << std::flush;
  }

  std::ostream& err_;
  std::size_t total_;
  bool enabled_;
  std::size_t done_ = 0;
  std::mutex mutex_;
};

// "ppdforge: message" becomes "ppdforge: PRODUCT: message"; other lines get
// the product in front.
std::string NameProduct(const std::string& messages, const std::string& product) {
  const std::string prefix = std::string(kProgram) + ": ";
  std::string out;
  std::istringstream lines(messages);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.rfind(prefix, 0) == 0) {
      out += prefix + product + ": " + line.substr(prefix.size());
    } else {
      out += prefix + product + ": " + line;
    }
    out += '\n';
  }
  return out;
}

}  // namespace

std::string ABatchGenerate::OutputNameFor(const std::string& product) {
  std::filesystem::path name = std::filesystem::path(product).filename();
  if (name.empty() || name == "." || name == "..") name = "product";
  name.replace_extension(".ppd");
  return name.string();
}

bool ABatchGenerate::IsTerminal(const std::ostream& err) {
  return &err == &std::cerr && ::isatty(STDERR_FILENO) == 1;
}

int ABatchGenerate::Run(const std::vector<std::string>& products, const std::string& directory,
                        const GenerateOne& generate, std::ostream& err, bool progress) {
  std::map<std::string, const std::string*> outputs;
  for (const std::string& product : products) {
    const std::string name = OutputNameFor(product);
    const auto [found, inserted] = outputs.emplace(name, &product);
    if (!inserted) {
      err << kProgram << ": " << *found->second << " and " << product << " would both write "
          << (std::filesystem::path(directory) / name).string() << "\n";
      return 2;
    }
  }
  std::error_code code;
  std::filesystem::create_directories(directory, code);
  if (code || !std::filesystem::is_directory(directory, code)) {
    err << kProgram << ": cannot write into the directory " << directory << ": "
        << (code ? code.message() : std::string("not a directory")) << "\n";
    return 1;
  }

  std::vector<Outcome> outcomes(products.size());
  std::atomic<std::size_t> next{0};
  ProgressBar bar(err, products.size(), progress);
  auto work = [&]() {
    for (std::size_t i = next.fetch_add(1); i < products.size(); i = next.fetch_add(1)) {
      const std::string output =
          (std::filesystem::path(directory) / OutputNameFor(products[i])).string();
      std::ostringstream messages;
      outcomes[i].status = generate(products[i], output, messages);
      outcomes[i].messages = messages.str();
      bar.Advance();
    }
  };
  const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t workers = std::min(cores, products.size());
  std::vector<std::thread> threads;
  threads.reserve(workers > 0 ? workers - 1 : 0);
  for (std::size_t i = 1; i < workers; ++i) threads.emplace_back(work);
  work();
  for (std::thread& thread : threads) thread.join();
  bar.Erase();

  int status = 0;
  for (std::size_t i = 0; i < products.size(); ++i) {
    err << NameProduct(outcomes[i].messages, products[i]);
    status = std::max(status, outcomes[i].status);
  }
  err.flush();
  return status;
}

}  // namespace ppdforge
