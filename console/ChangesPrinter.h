#ifndef CONSOLE_CHANGES_PRINTER_H
#define CONSOLE_CHANGES_PRINTER_H

#include <iosfwd>

#include "diagnosis/Changes.h"

namespace console {

/// Writes below each request which rows it took (-) and which it put (+).
diagnosis::RequestChanges ChangesPrinter(const softcard::Card& card, std::ostream& out, bool colour);

}  // namespace console

#endif
