#include "console/shell/LineEditor.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

namespace console {
namespace {

constexpr int kHistoryLines = 1000;

void Interrupted(int) {}

/// Of several words the beginning that they share.
std::string CommonBeginning(const std::vector<std::string>& words) {
  std::string common = words[0];
  for (const std::string& word : words) {
    const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
    common.erase(end, common.end());
  }
  return common;
}

/// The words side by side, as wide as the longest one needs.
void List(const std::vector<std::string>& words) {
  std::size_t width = 0;
  for (const std::string& word : words) width = std::max(width, word.size() + 2);
  const std::size_t columns = std::max(std::size_t{1}, 80 / width);
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool ends = i % columns == columns - 1 || i + 1 == words.size();
    std::cout << words[i] << (ends ? "\n" : std::string(width - words[i].size(), ' '));
  }
  std::cout.flush();
}

}  // namespace

std::string HistoryFile() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  if (state && *state == '/') return std::string(state) + "/softcard/history";
  const char* const home = std::getenv("HOME");
  return home && *home == '/' ? std::string(home) + "/.local/state/softcard/history" : "";
}

LineEditor::LineEditor(std::string history_file, Completer completer)
    : history_file_(std::move(history_file)), completer_(std::move(completer)) {
  std::setlocale(LC_CTYPE, "");
  editor_ = el_init("softcard", stdin, stdout, stderr);
  history_ = history_init();
  HistEvent event;
  history(history_, &event, H_SETSIZE, kHistoryLines);
  history(history_, &event, H_SETUNIQUE, 1);
  if (!history_file_.empty()) history(history_, &event, H_LOAD, history_file_.c_str());
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_HIST, history, history_);
  el_set(
      editor_, EL_PROMPT_ESC,
      +[](EditLine* editor) {
        void* self = nullptr;
        el_get(editor, EL_CLIENTDATA, &self);
        return static_cast<LineEditor*>(self)->prompt_.data();
      },
      '\1');
  el_set(editor_, EL_ADDFN, "complete", "Completes the word", &LineEditor::OnTab);
  el_set(editor_, EL_BIND, "^I", "complete", nullptr);
  el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor_, nullptr);
}

LineEditor::~LineEditor() {
  if (!history_file_.empty()) {
    HistEvent event;
    std::error_code ignored;  // a history that cannot be kept is no reason to stop
    std::filesystem::create_directories(std::filesystem::path(history_file_).parent_path(), ignored);
    history(history_, &event, H_SAVE, history_file_.c_str());
  }
  history_end(history_);
  el_end(editor_);
}

LineEditor::Ending LineEditor::Read(const std::string& prompt, std::string* line) {
  prompt_ = prompt;
  // The signal ends the read, and nothing else.
  struct sigaction action {};
  struct sigaction before {};
  action.sa_handler = Interrupted;
  sigaction(SIGINT, &action, &before);
  int count = 0;
  errno = 0;
  const char* const text = el_gets(editor_, &count);
  const bool interrupted = !text && errno == EINTR;
  sigaction(SIGINT, &before, nullptr);
  if (!text) {
    std::cout << (interrupted ? "^C\n" : "\n") << std::flush;
    if (interrupted) el_reset(editor_);
    return interrupted ? Ending::kCancelled : Ending::kEnd;
  }
  line->assign(text, static_cast<std::size_t>(count));
  HistEvent event;
  if (line->find_first_not_of(" \t\n") != std::string::npos) history(history_, &event, H_ENTER, text);
  if (!line->empty() && line->back() == '\n') line->pop_back();
  return Ending::kLine;
}

unsigned char LineEditor::OnTab(EditLine* editor, int) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return static_cast<LineEditor*>(self)->Complete();
}

unsigned char LineEditor::Complete() {
  const LineInfo* const info = el_line(editor_);
  const std::string line(info->buffer, info->cursor);
  const std::vector<std::string> words = completer_(line);
  if (words.empty()) return CC_ERROR;
  const std::size_t blank = line.find_last_of(" \t");
  const std::size_t typed = line.size() - (blank == std::string::npos ? 0 : blank + 1);
  std::string more = CommonBeginning(words).substr(typed);
  if (words.size() == 1 && words[0].back() != '=') more += ' ';
  if (!more.empty()) return el_insertstr(editor_, more.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  std::cout << '\n';
  List(words);
  return CC_REDISPLAY;
}

}  // namespace console
