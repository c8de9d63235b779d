#ifndef CONSOLE_SHELL_LINE_EDITOR_H
#define CONSOLE_SHELL_LINE_EDITOR_H

#include <histedit.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace console {

/// Where the lines of earlier sessions are kept: in the user's state folder; empty without a home.
std::string HistoryFile();

/// Reads lines from the terminal by libedit: with the user's ~/.editrc, a history that outlives the program, and
/// completion by the tabulator. There is one at a time.
class LineEditor {
 public:
  /// What the last word of a line can be, each beginning with it.
  using Completer = std::function<std::vector<std::string>(const std::string& line)>;

  /// No history is kept without a file's name, or where it cannot be written.
  LineEditor(std::string history_file, Completer completer);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  enum class Ending { kLine, kCancelled, kEnd };
  /// Reads a line, without its end: kCancelled when the user has given it up (Ctrl-C), kEnd when no more come (Ctrl-D).
  Ending Read(const std::string& prompt, std::string* line);

 private:
  static unsigned char OnTab(EditLine* editor, int key);
  unsigned char Complete();

  std::string history_file_;
  Completer completer_;
  std::string prompt_;
  EditLine* editor_;
  History* history_;
};

}  // namespace console

#endif
