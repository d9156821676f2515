/* Export macro of the SDK simulators. Portable-executable toolchains export with dllexport and
 * import with dllimport; ELF builds compile with hidden visibility and mark exports default.
 * TELVARRA_SIM_API exports while a simulator is built (telvarra_add_simulator defines
 * TELVARRA_SIM_BUILDING) and imports in the programs that link it. */
#ifndef TELVARRA_SIM_COMMON_SIMEXPORT_H
#define TELVARRA_SIM_COMMON_SIMEXPORT_H

#if defined(__MINGW32__) || defined(_MSC_VER)
#define TELVARRA_SIM_EXPORT __declspec(dllexport)
#define TELVARRA_SIM_IMPORT __declspec(dllimport)
#else
#define TELVARRA_SIM_EXPORT __attribute__((visibility("default")))
#define TELVARRA_SIM_IMPORT
#endif

#ifdef TELVARRA_SIM_BUILDING
#define TELVARRA_SIM_API TELVARRA_SIM_EXPORT
#else
#define TELVARRA_SIM_API TELVARRA_SIM_IMPORT
#endif

#endif
