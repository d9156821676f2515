// One vendor SDK bound at run time: its library, opened by file name, and a table of function
// pointers filled by name, in the order of one list per make. Each listed name is required or
// optional; a load succeeds when the library opens and every required name is found.
//
// A make writes its list once, as an X-macro LIST(TYPED, NAMED):
//   TYPED(name, Required | Optional)  a function whose type `Signatures::name` the make's vendor
//                                     header declares: the table holds a typed pointer;
//   NAMED(name, Required | Optional)  a name that is only looked up, never called.
// and declares its table with TELVARRA_SDK_TABLE(LIST) inside a struct that names `Signatures`.
// The pointers, the names and the binding order all come from that one list.
#ifndef TELVARRA_PLATFORM_SDKBINDING_H
#define TELVARRA_PLATFORM_SDKBINDING_H

#include <functional>
#include <string>
#include <vector>

#include "platform/DynamicLibrary.h"

namespace telvarra::platform {

enum class Need { Required, Optional };

// The pointer kept for a name that is looked up but never called.
using UntypedFunction = void (*)();

// How a name is looked up in an open library. Loader tests replace it to hide names from a real
// library instead of building one library per missing name.
using SymbolLookup = std::function<void*(const DynamicLibrary& library, const char* name)>;

// What a fresh look at a binding's library finds, through the same lookup as a load: for hosts
// and people asking why a make does not start.
struct SdkDiagnosis {
    std::string lookedFor;    // the file name the binding opens (a bare name: the search path)
    std::string foundAt;      // the file the system loaded; empty when none
    std::string loaderError;  // the system's reason when it loaded none
    std::vector<std::string> missingRequired;
    std::vector<std::string> missingOptional;
    std::string version;  // as the SDK reports it, where the make has a way to ask
};

// A make's way to ask its SDK for its version, given the lookup of a name in the open library.
using VersionReader =
    std::function<std::string(const std::function<void*(const char* name)>& lookup)>;

// The part of a binding that does not depend on the make's table.
class SdkLibrary {
  public:
    explicit SdkLibrary(std::string fileName);
    virtual ~SdkLibrary() = default;
    SdkLibrary(const SdkLibrary&) = delete;
    SdkLibrary& operator=(const SdkLibrary&) = delete;

    // Opens the library (the vendor's file name, or `fileName`), closing the one held before
    // also when this one fails, then looks every listed name up in list order, a miss included.
    // True when every required name was found. A library that lacks a required name stays open
    // with the table holding what was found: releasing it is the caller's decision.
    bool load();
    bool load(const std::string& fileName);
    // Releases the library; the table keeps its (now dangling) pointers until the next load.
    void unload();
    bool isLoaded() const { return m_library.isOpen(); }
    const std::string& fileName() const { return m_fileName; }

    // Test seam: an empty lookup restores the real one.
    void setSymbolLookup(SymbolLookup lookup);

    // Opens the library once more on its own handle, looks every listed name up and closes it:
    // the binding's own state is left as it is.
    // `readVersion`, when given, asks the SDK its version once every required name is there.
    SdkDiagnosis diagnose(const VersionReader& readVersion = {}) const;

  protected:
    // Binds every listed name; false when a required one is missing.
    virtual bool bindAll() = 0;
    // Every listed name with its need, in list order.
    virtual void forEachName(const std::function<void(const char*, Need)>& visit) const = 0;

    template <class Function>
    bool bind(const char* name, Function& pointer) {
        // Object-to-function pointer conversion is what dlsym/GetProcAddress results require.
        pointer = reinterpret_cast<Function>(m_lookup(m_library, name));
        return pointer != nullptr;
    }

  private:
    std::string m_fileName;
    DynamicLibrary m_library;
    SymbolLookup m_lookup;
};

template <class Table>
class SdkBinding final : public SdkLibrary {
  public:
    using SdkLibrary::SdkLibrary;

    const Table& functions() const { return m_table; }

  private:
    bool bindAll() override {
        bool requiredFound = true;
        m_table.forEachEntry([&](const char* name, auto& pointer, Need need) {
            if (!bind(name, pointer) && need == Need::Required) requiredFound = false;
        });
        return requiredFound;
    }

    void forEachName(const std::function<void(const char*, Need)>& visit) const override {
        m_table.forEachEntry([&](const char* name, const auto&, Need need) { visit(name, need); });
    }

    Table m_table{};
};

}  // namespace telvarra::platform

// ---- Generating a make's table from its list. ----
#define TELVARRA_SDK_TYPED_POINTER(name, need) Signatures::name* name = nullptr;
#define TELVARRA_SDK_UNTYPED_POINTER(name, need) \
    ::telvarra::platform::UntypedFunction name = nullptr;
#define TELVARRA_SDK_VISIT_ENTRY(name, need) visit(#name, name, ::telvarra::platform::Need::need);
#define TELVARRA_SDK_ENTRY_NAME(name, need) #name,

// The members of a table struct from a list whose entries are made by TYPED and UNTYPED (the
// pointers), VISIT (one step of the visit) and NAME (one name).
#define TELVARRA_SDK_TABLE_OF(LIST, TYPED, UNTYPED, VISIT, NAME) \
    LIST(TYPED, UNTYPED)                                         \
    template <class Visit>                                       \
    void forEachEntry(Visit&& visit) {                           \
        LIST(VISIT, VISIT)                                       \
    }                                                            \
    template <class Visit>                                       \
    void forEachEntry(Visit&& visit) const {                     \
        LIST(VISIT, VISIT)                                       \
    }                                                            \
    static constexpr const char* kNames[] = {LIST(NAME, NAME)};

// The members of a table struct: one pointer per listed name, the visit of every entry in list
// order (name, pointer, need), and the names in order.
#define TELVARRA_SDK_TABLE(LIST)                                                          \
    TELVARRA_SDK_TABLE_OF(LIST, TELVARRA_SDK_TYPED_POINTER, TELVARRA_SDK_UNTYPED_POINTER, \
                          TELVARRA_SDK_VISIT_ENTRY, TELVARRA_SDK_ENTRY_NAME)

// The same for a list whose entries name no need, TYPED(name) and NAMED(name), with one need for
// all: required (a load fails for any missing name) or optional (a load never fails for a
// missing function, and each caller checks its pointer).
#define TELVARRA_SDK_LISTED_TYPED_POINTER(name) TELVARRA_SDK_TYPED_POINTER(name, )
#define TELVARRA_SDK_LISTED_UNTYPED_POINTER(name) TELVARRA_SDK_UNTYPED_POINTER(name, )
#define TELVARRA_SDK_LISTED_NAME(name) #name,
#define TELVARRA_SDK_REQUIRED_VISIT_ENTRY(name) TELVARRA_SDK_VISIT_ENTRY(name, Required)
#define TELVARRA_SDK_OPTIONAL_VISIT_ENTRY(name) TELVARRA_SDK_VISIT_ENTRY(name, Optional)
#define TELVARRA_SDK_REQUIRED_TABLE(LIST)                                                         \
    TELVARRA_SDK_TABLE_OF(LIST, TELVARRA_SDK_LISTED_TYPED_POINTER,                                \
                          TELVARRA_SDK_LISTED_UNTYPED_POINTER, TELVARRA_SDK_REQUIRED_VISIT_ENTRY, \
                          TELVARRA_SDK_LISTED_NAME)
#define TELVARRA_SDK_OPTIONAL_TABLE(LIST)                                                         \
    TELVARRA_SDK_TABLE_OF(LIST, TELVARRA_SDK_LISTED_TYPED_POINTER,                                \
                          TELVARRA_SDK_LISTED_UNTYPED_POINTER, TELVARRA_SDK_OPTIONAL_VISIT_ENTRY, \
                          TELVARRA_SDK_LISTED_NAME)

#endif
