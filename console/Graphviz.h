#ifndef CONSOLE_GRAPHVIZ_H
#define CONSOLE_GRAPHVIZ_H

#include <string>

namespace console {

constexpr unsigned kLongestDrawing = 60;  ///< seconds

/// The picture that Graphviz draws, as "svg" or "png". Throws std::runtime_error with the reason and the remedy, also
/// when it takes longer than these seconds.
std::string Drawn(const std::string& format, const std::string& dot, unsigned seconds = kLongestDrawing);

/// Writes a picture in the format that the path's extension names, svg, png or dot; the first two are drawn by
/// Graphviz. All is written or nothing. Throws std::runtime_error with the reason and the remedy.
void WritePicture(const std::string& path, const std::string& dot);

/// Whether the path ends in an extension that WritePicture knows.
bool IsPicture(const std::string& path);

}  // namespace console

#endif
