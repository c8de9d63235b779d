#include "console/Main.h"

int main(int argc, char** argv) { return console::Main(argc, argv); }
