#ifndef DIAGNOSIS_WHOLE_FILE_H
#define DIAGNOSIS_WHOLE_FILE_H

#include <string>
#include <string_view>

namespace diagnosis {

/// Writes a file, all of it or nothing: what stands there stays until the new one is complete. Throws
/// std::runtime_error with the reason and the remedy.
void WriteWhole(const std::string& path, std::string_view content);

}  // namespace diagnosis

#endif
