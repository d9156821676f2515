// A tiny shared library with one C function, for the run-time loading tests.
extern "C" int telvarra_probe_answer() { return 42; }
