#ifndef CONSOLE_FORMATS_H
#define CONSOLE_FORMATS_H

#include "serve/Format.h"

namespace console {

/// "text" and "color" as `softcard run` prints, "json" as docs/control-1.schema.json describes.
serve::Formats MakeFormats();

}  // namespace console

#endif
