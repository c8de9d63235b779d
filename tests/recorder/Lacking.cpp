// A platform's library that lacks all functions but one.
extern "C" int fm_init(void) { return 0; }
