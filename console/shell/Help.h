#ifndef CONSOLE_SHELL_HELP_H
#define CONSOLE_SHELL_HELP_H

#include <string>

#include "scenario/Language.h"

namespace console {

/// What the language says of the statements that begin with these words, "show", "expect call": form and help of each,
/// of all statements when there are no words. Says what there is when nothing begins so.
std::string Help(const scenario::Language& language, const std::string& words);

}  // namespace console

#endif
