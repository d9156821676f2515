/* Export macro of the Telvarra library.
 * PE/COFF toolchains need dllexport while building the DLL and dllimport in its hosts;
 * ELF builds compile with hidden visibility and mark the exported surface default.
 * TELVARRA_STATIC is for code that links the library's objects directly (its unit tests). */
#ifndef TELVARRA_EXPORT_H
#define TELVARRA_EXPORT_H

#if defined(TELVARRA_STATIC)
#define TELVARRA_API
#elif defined(__MINGW32__) || defined(_MSC_VER)
#if defined(TELVARRA_BUILDING_LIBRARY)
#define TELVARRA_API __declspec(dllexport)
#else
#define TELVARRA_API __declspec(dllimport)
#endif
#else
#define TELVARRA_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define TELVARRA_EXTERN_C extern "C"
#else
#define TELVARRA_EXTERN_C
#endif

#endif
