#include "runtime/TroubleShootLib/troubleshoot.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include "scripted_log_environment.h"
#include "support/scratch_directory.h"
#include "worker.h"

namespace korvane {
namespace {

using test::fileBytes;
using test::ScriptedLogEnvironment;

class LogTest : public testing::Test {
  protected:
    std::filesystem::path file(const char* year, const char* day) const {
        return scratch_.path() / "LogFile" / ("Host.VLog" + std::string(year)) / day;
    }
    std::string today() const { return fileBytes(file("2009", "04-23.log")); }

    test::ScratchDirectory scratch_;
    ScriptedLogEnvironment environment_{scratch_.path() / "Host.V.exe"};
    TroubleShootLog log_{environment_};
};

TEST_F(LogTest, WritesLinesInGbkToTheFileOfTheDay) {
    log_.print(logWarning, "监测主线程启动");
    log_.print(logError, "100%s %d %n%");
    log_.print(-1, "a\nb");
    log_.print(3, "\x80\xFF not UTF-8");  // of an exception, say
    const std::string bytes = today();
    EXPECT_EQ(bytes.find("09:05:07\xBE\xAF\xB8\xE6 "
                         "\xBC\xE0\xB2\xE2\xD6\xF7\xCF\xDF\xB3\xCC\xC6\xF4\xB6\xAF\r\n"
                         "09:05:07\xB4\xED\xCE\xF3 100%s %d %n%\r\n"
                         "09:05:07\xCE\xB4\xD6\xAA a\r\nb\r\n"
                         "09:05:07\xCE\xB4\xD6\xAA "),
              0u)
        << bytes;
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 5);
}

TEST_F(LogTest, CountsErrorsOnly) {
    for (const int level : {0, 1, 2, 2, 3, -5}) log_.print(level, "x");
    EXPECT_EQ(log_.errorCount(), 2u);
}

TEST_F(LogTest, WithoutTheSwitchOnlyInformationIsDropped) {
    log_.print(logInformation, "dropped");
    log_.print(logError, "x");
    EXPECT_EQ(today(), "09:05:07\xB4\xED\xCE\xF3 x\r\n");
    EXPECT_EQ(environment_.asked, "Nox CAS1.0/PrintLog");
}

TEST_F(LogTest, TheSwitchCountsFromALaterMinuteOn) {
    log_.print(logInformation, "1");
    environment_.printLog = 1;
    environment_.now.second = 59;
    log_.print(logInformation, "2");
    EXPECT_EQ(today(), "");
    environment_.now.minute = 6;
    log_.print(logInformation, "3");
    EXPECT_EQ(today(), "09:06:59\xD0\xC5\xCF\xA2 3\r\n");
    environment_.printLog.reset();  // a failed read leaves it on
    environment_.now.minute = 7;
    log_.print(logInformation, "4");
    environment_.printLog = 0;
    log_.print(logInformation, "5");
    environment_.now.hour = 10;  // another minute, though of the same number
    log_.print(logInformation, "6");
    EXPECT_EQ(today(),
              "09:06:59\xD0\xC5\xCF\xA2 3\r\n"
              "09:07:59\xD0\xC5\xCF\xA2 4\r\n"
              "09:07:59\xD0\xC5\xCF\xA2 5\r\n");
    EXPECT_EQ(environment_.reads, 4);  // once a minute
}

TEST_F(LogTest, MidnightAndNewYearBeginNewFiles) {
    log_.print(logWarning, "1");
    environment_.now = {2009, 4, 24, 0, 0, 0};
    log_.print(logWarning, "2");
    environment_.now = {2009, 12, 31, 23, 59, 59};
    log_.print(logWarning, "3");
    environment_.now = {2010, 1, 1, 0, 0, 0};
    log_.print(logWarning, "4");
    environment_.now = {2011, 1, 1, 0, 0, 0};
    log_.print(logWarning, "5");
    EXPECT_EQ(fileBytes(file("2009", "04-23.log")), "09:05:07\xBE\xAF\xB8\xE6 1\r\n");
    EXPECT_EQ(fileBytes(file("2009", "04-24.log")), "00:00:00\xBE\xAF\xB8\xE6 2\r\n");
    EXPECT_EQ(fileBytes(file("2009", "12-31.log")), "23:59:59\xBE\xAF\xB8\xE6 3\r\n");
    EXPECT_EQ(fileBytes(file("2010", "01-01.log")), "00:00:00\xBE\xAF\xB8\xE6 4\r\n");
    EXPECT_EQ(fileBytes(file("2011", "01-01.log")), "00:00:00\xBE\xAF\xB8\xE6 5\r\n");
}

TEST_F(LogTest, ADirectoryThatCannotBeWrittenCostsTheLineOnly) {
    std::ofstream(scratch_.path() / "LogFile") << "in the way";
    log_.print(logError, "lost");
    EXPECT_EQ(log_.errorCount(), 1u);
    std::filesystem::remove(scratch_.path() / "LogFile");
    log_.print(logError, "written");
    EXPECT_EQ(today(), "09:05:07\xB4\xED\xCE\xF3 written\r\n");
}

TEST_F(LogTest, DirectoriesThatWereRemovedAreMadeAgain) {
    log_.print(logError, "1");
    std::filesystem::remove_all(scratch_.path() / "LogFile");
    log_.print(logError, "2");
    EXPECT_EQ(today(), "09:05:07\xB4\xED\xCE\xF3 2\r\n");
}

TEST_F(LogTest, WithoutAPathTheLineGoesToTheFallbackFile) {
    const std::filesystem::path fallback = "c:\\NOXExcep.log";
    const std::string before = fileBytes(fallback);
    environment_.executable = L"no-directory.exe";
    log_.print(logError, "1");
    environment_.executable.reset();  // throws
    log_.print(logError, "2");
    EXPECT_EQ(fileBytes(fallback), before +
                                       "09:05:07\xB4\xED\xCE\xF3 1\r\n"
                                       "09:05:07\xB4\xED\xCE\xF3 2\r\n");
    environment_.executable = scratch_.path() / "Host.V.exe";
    log_.print(logError, "3");
    EXPECT_EQ(today(), "09:05:07\xB4\xED\xCE\xF3 3\r\n");
    if (before.empty()) std::filesystem::remove(fallback);
}

TEST_F(LogTest, AProgramWithoutExtensionIsNamedInFull) {
    environment_.executable = scratch_.path() / "v1.2" / "Host";
    std::filesystem::create_directory(scratch_.path() / "v1.2");
    log_.print(logError, "x");
    EXPECT_TRUE(std::filesystem::exists(scratch_.path() / "v1.2" / "LogFile" / "HostLog2009" /
                                        "04-23.log"));
}

TEST_F(LogTest, LinesOfManyThreadsStayWhole) {
    constexpr int threads = 8, lines = 100;
    const auto text = [](int thread, int line) {
        return std::string(40, static_cast<char>('a' + thread)) + std::to_string(line);
    };
    std::atomic<int> inside{0}, overlapping{0};
    environment_.onTime = [&] {
        if (++inside > 1) ++overlapping;
        std::this_thread::yield();
        --inside;
    };
    std::vector<std::thread> writers;
    for (int thread = 0; thread < threads; ++thread)
        writers.emplace_back([&, thread] {
            for (int line = 0; line < lines; ++line) log_.print(logError, text(thread, line));
        });
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(overlapping, 0);

    std::vector<std::string> expected, written;
    for (int thread = 0; thread < threads; ++thread)
        for (int line = 0; line < lines; ++line)
            expected.push_back("09:05:07\xB4\xED\xCE\xF3 " + text(thread, line) + "\r");
    std::istringstream bytes(today());
    for (std::string line; std::getline(bytes, line);) written.push_back(line);
    std::sort(expected.begin(), expected.end());
    std::sort(written.begin(), written.end());
    EXPECT_EQ(written, expected);
    EXPECT_EQ(log_.errorCount(), unsigned{threads * lines});
}

TEST_F(LogTest, AThreadEndedByForceInTheMiddleOfALineBlocksNobody) {
    nox_pub::mswin::Event inside;
    environment_.onTime = [&] {
        inside.signal();
        Sleep(INFINITE);
    };
    nox_pub::mswin::test::Worker worker([&](auto&) {
        log_.print(logError, "never");
        return 0;
    });
    worker.start();
    ASSERT_TRUE(inside.wait(nox_pub::mswin::test::longEnoughMs));
    worker.stop(0, true);
    environment_.onTime = nullptr;
    log_.print(logError, "next");
    EXPECT_EQ(today(), "09:05:07\xB4\xED\xCE\xF3 next\r\n");
}

// The log of the process lies beside the test program.
std::filesystem::path processLogFile() {
    LogFilePath path(systemLogEnvironment());
    return path.forTime(systemLogEnvironment().localTime());
}

TEST(PrintLogTest, FormatsAndWritesBesideTheProgram) {
    const std::string mark = std::to_string(GetCurrentProcessId());
    const auto errors = processLog().errorCount();
    const std::filesystem::path before = processLogFile();
    PrintLog(logError, "%s 设备 %04d 100%%", mark.c_str(), 7);
    // The day may have ended in between.
    const std::string bytes = fileBytes(before) + fileBytes(processLogFile());
    EXPECT_NE(bytes.find("\xB4\xED\xCE\xF3 " + mark + " \xC9\xE8\xB1\xB8 0007 100%\r\n"),
              std::string::npos);
    EXPECT_EQ(processLog().errorCount(), errors + 1);
    EXPECT_EQ(before.parent_path().parent_path().filename(), L"LogFile");
    EXPECT_EQ(before.parent_path().filename().wstring().find(L"runtime_testsLog20"), 0u);
}

TEST(PrintLogTest, ABadArgumentCostsTheLineOnly) {
    const auto errors = processLog().errorCount();
    const char* volatile nowhere = reinterpret_cast<const char*>(8);
    PrintLog(logError, "%s", nowhere);
    EXPECT_EQ(processLog().errorCount(), errors);
    PrintLog(logError, "still there");
    EXPECT_EQ(processLog().errorCount(), errors + 1);
    std::filesystem::remove_all(processLogFile().parent_path().parent_path());
}

}  // namespace
}  // namespace korvane
