#ifndef CONSOLE_MAIN_H
#define CONSOLE_MAIN_H

namespace console {

/// The command `softcard` with these arguments: its exit status.
int Main(int argc, char** argv);

}  // namespace console

#endif
