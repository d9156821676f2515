#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/Clock.h"
#include "platform/DynamicLibrary.h"
#include "platform/Paths.h"
#include "platform/Platform.h"
#include "platform/QCriticalSection.h"

using namespace telvarra::platform;

namespace {

using ProbeFunction = int (*)();

TEST(DynamicLibraryTest, OpensByFullPathAndFindsItsSymbols) {
    DynamicLibrary library;
    ASSERT_TRUE(library.open(TELVARRA_PROBE_PATH)) << library.lastError();
    auto answer = reinterpret_cast<ProbeFunction>(library.symbol("telvarra_probe_answer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(library.symbol("telvarra_no_such_symbol"), nullptr);
    EXPECT_EQ(library.symbol(nullptr), nullptr);

    library.close();
    EXPECT_FALSE(library.isOpen());
    EXPECT_EQ(library.symbol("telvarra_probe_answer"), nullptr);
}

TEST(DynamicLibraryTest, OpensByFileNameThroughTheSystemSearchOrder) {
    DynamicLibrary library;
    EXPECT_TRUE(library.open(sharedLibraryFileName("telvarra_probe"))) << library.lastError();
    DynamicLibrary moved(std::move(library));
    EXPECT_FALSE(library.isOpen());
    EXPECT_NE(moved.symbol("telvarra_probe_answer"), nullptr);
}

TEST(DynamicLibraryTest, MissingLibraryFailsWithAReason) {
    DynamicLibrary library;
    EXPECT_FALSE(library.open(sharedLibraryFileName("telvarra_no_such_library")));
    EXPECT_FALSE(library.isOpen());
    EXPECT_FALSE(library.lastError().empty());
}

TEST(PathsTest, ExecutableDirectoryHoldsThisProgramAndEndsInASeparator) {
    const std::string directory = executableDirectory();
    ASSERT_FALSE(directory.empty());
    EXPECT_TRUE(directory.back() == '/' || directory.back() == '\\');
    EXPECT_TRUE(std::filesystem::exists(directory + TELVARRA_TEST_PROGRAM_NAME)) << directory;
    // Linked statically into this program, the module is the program itself.
    EXPECT_EQ(moduleDirectory(), directory);
}

// Where a library finds itself when its full path is as long as the system's 260-character
// buffer for it: on Windows the name is cut there, so its folder is unknown and the Canon runtime
// is then loaded by bare name; a path one shorter is whole. Other systems have no such limit.
TEST(PathsTest, AModulePathFillingTheWholeBufferHasNoFolderOnWindows) {
    namespace fs = std::filesystem;
    const fs::path base = fs::temp_directory_path() / "telvarra-path";
    const std::string fileName = fs::path(TELVARRA_PROBE_PATH).filename().string();
    for (const std::size_t length : {259u, 260u}) {
        SCOPED_TRACE(length);
        const std::size_t used = (base.string() + "/x/" + fileName).size();
        ASSERT_LT(used, length) << "the temporary folder's path is too long for this test";
        const fs::path folder = base / std::string(length - used + 1, 'x');
        const fs::path copy = folder / fileName;
        ASSERT_EQ(copy.string().size(), length);
        fs::create_directories(folder);
        fs::copy_file(TELVARRA_PROBE_PATH, copy, fs::copy_options::overwrite_existing);
        {
            DynamicLibrary library;
            ASSERT_TRUE(library.open(copy.string())) << library.lastError();
            auto where = reinterpret_cast<const char* (*)()>(
                library.symbol("telvarra_probe_module_directory"));
            ASSERT_NE(where, nullptr);
            const std::string expected = (folder / "").string();
            EXPECT_EQ(where(), kIsWindows && length == 260 ? std::string() : expected);
        }
        fs::remove_all(base);
    }
}

TEST(QCriticalSectionTest, IsRecursiveForItsOwnerAndExclusiveForOthers) {
    QCriticalSection section;
    section.lock();
    ASSERT_TRUE(section.try_lock());  // the owner may enter again

    std::atomic<bool> otherGotIn{true};
    std::thread([&] { otherGotIn = section.try_lock(); }).join();
    EXPECT_FALSE(otherGotIn);

    section.unlock();
    section.unlock();
    std::thread([&] {
        otherGotIn = section.try_lock();
        if (otherGotIn) section.unlock();
    }).join();
    EXPECT_TRUE(otherGotIn);
}

TEST(ClockTest, SleepWaitsAtLeastRoughlyTheTimeAsked) {
    const auto start = std::chrono::steady_clock::now();
    sleepMilliseconds(30);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(25));
}

}  // namespace
