#ifndef RECORDER_WORDS_H
#define RECORDER_WORDS_H

#include <string_view>

namespace recorder {

/// What the player's platform calls a status from now on; statuses that no platform lists keep their one text.
void SetStatusWords(int status, std::string_view words);

}  // namespace recorder

#endif
