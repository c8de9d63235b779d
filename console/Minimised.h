#ifndef CONSOLE_MINIMISED_H
#define CONSOLE_MINIMISED_H

#include <cstddef>
#include <optional>
#include <string>

#include "console/CardRecording.h"
#include "scenario/Language.h"
#include "softcard/Card.h"

namespace console {

/// The scenario of the request that begins in this line of the recording, expected to do as recorded, and of those
/// requests before it without which it would do something else on the software card than it does after all of them.
/// Without a line: of the first request that does not do as recorded on the software card; when all do, of the first
/// that was refused. Throws std::runtime_error when there is no such request. Each try is a process of its own, and the
/// module must not have been started in this one.
std::string MinimisedScenario(CardRecording* recording, std::optional<std::size_t> line,
                              const scenario::Language& language, softcard::Card& card);

}  // namespace console

#endif
