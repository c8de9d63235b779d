// A process on a platform that lacks functions.
extern "C" int fm_init(void);

int main() { return fm_init(); }
