#include "runtime/TroubleShootLib/troubleshoot.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <thread>
#include <vector>

#include "scripted_log_environment.h"
#include "support/scratch_directory.h"
#include "worker.h"

namespace korvane {
namespace {

namespace fs = std::filesystem;
using test::fileBytes;

const std::string information = "\xD0\xC5\xCF\xA2 ", warning = "\xBE\xAF\xB8\xE6 ",
                  error = "\xB4\xED\xCE\xF3 ", unknown = "\xCE\xB4\xD6\xAA ";

std::string line(const std::string& tag, const std::string& text, const char* time = "09:05:07") {
    return time + tag + text + "\r\n";
}

class LogTest : public testing::Test {
  protected:
    std::string ofDay(const char* yearAndDay) const {
        return fileBytes(directory_ / "LogFile" / (std::string("Host.VLog") + yearAndDay));
    }
    std::string today() const { return ofDay("2009/04-23.log"); }

    test::ScratchDirectory scratch_;
    const fs::path directory_ = scratch_.path();
    test::ScriptedLogEnvironment environment_{directory_ / "Host.V.exe"};
    TroubleShootLog log_{environment_};
};

TEST_F(LogTest, WritesLinesInGbkToTheFileOfTheDayAndCountsErrors) {
    log_.print(logWarning, "监测主线程启动");
    log_.print(logError, "100%s %d %n%");
    log_.print(-1, "a\nb");
    log_.print(3, "\x80\xFF not UTF-8");  // of an exception, say
    const std::string bytes = today();
    EXPECT_TRUE(bytes.starts_with(
        line(warning, "\xBC\xE0\xB2\xE2\xD6\xF7\xCF\xDF\xB3\xCC\xC6\xF4\xB6\xAF") +
        line(error, "100%s %d %n%") + line(unknown, "a\r\nb") + "09:05:07" + unknown))
        << bytes;
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 5);
    EXPECT_EQ(log_.errorCount(), 1u);
}

TEST_F(LogTest, InformationIsWrittenFromTheMinuteAfterTheSwitchWasSet) {
    log_.print(logInformation, "1");
    EXPECT_EQ(environment_.asked, "Nox CAS1.0/PrintLog");
    environment_.printLog = 1;
    environment_.now.second = 59;
    log_.print(logInformation, "2");
    environment_.now.minute = 6;
    log_.print(logInformation, "3");
    environment_.printLog.reset();  // a failed read leaves it on
    environment_.now.minute = 7;
    log_.print(logInformation, "4");
    environment_.printLog = 0;
    log_.print(logInformation, "5");
    environment_.now.hour = 10;  // another minute, though of the same number
    log_.print(logInformation, "6");
    log_.print(logError, "7");
    EXPECT_EQ(today(), line(information, "3", "09:06:59") + line(information, "4", "09:07:59") +
                           line(information, "5", "09:07:59") + line(error, "7", "10:07:59"));
    EXPECT_EQ(environment_.reads, 4);  // once a minute
}

TEST_F(LogTest, MidnightAndNewYearBeginNewFiles) {
    const std::pair<LogTime, const char*> days[] = {{{2009, 4, 23, 9, 5, 7}, "2009/04-23.log"},
                                                    {{2009, 4, 24, 9, 5, 7}, "2009/04-24.log"},
                                                    {{2009, 5, 24, 9, 5, 7}, "2009/05-24.log"},
                                                    {{2010, 1, 1, 9, 5, 7}, "2010/01-01.log"},
                                                    {{2011, 1, 1, 9, 5, 7}, "2011/01-01.log"}};
    for (const auto& [time, file] : days) {
        environment_.now = time;
        log_.print(logWarning, file);
    }
    for (const auto& [time, file] : days) EXPECT_EQ(ofDay(file), line(warning, file));
}

TEST_F(LogTest, WhatStandsInTheWayCostsTheLineAndWhatIsRemovedIsMadeAgain) {
    std::ofstream(directory_ / "LogFile") << "in the way";
    for (const char* text : {"lost", "written", "once more"}) {
        log_.print(logError, text);
        EXPECT_EQ(today(), text == std::string("lost") ? "" : line(error, text));
        fs::remove_all(directory_ / "LogFile");
    }
    EXPECT_EQ(log_.errorCount(), 3u);
}

TEST_F(LogTest, WithoutAPathTheLineGoesToTheFallbackFile) {
    const fs::path fallback = "c:\\NOXExcep.log";
    const std::string before = fileBytes(fallback);
    environment_.executable = L"no-directory.exe";
    log_.print(logError, "1");
    environment_.executable.reset();  // throws
    log_.print(logError, "2");
    EXPECT_EQ(fileBytes(fallback), before + line(error, "1") + line(error, "2"));
    // With the next path, one without an extension, it is found again.
    fs::create_directory(directory_ / "v1.2");
    environment_.executable = directory_ / "v1.2" / "Host";
    log_.print(logError, "3");
    EXPECT_TRUE(fs::exists(directory_ / "v1.2" / "LogFile" / "HostLog2009" / "04-23.log"));
    if (before.empty()) fs::remove(fallback);
}

TEST_F(LogTest, LinesOfManyThreadsStayWhole) {
    constexpr int threads = 8, lines = 100;
    std::atomic<int> inside{0}, overlapping{0};
    environment_.onTime = [&] {
        if (++inside > 1) ++overlapping;
        std::this_thread::yield();
        --inside;
    };
    std::vector<std::thread> writers;
    for (char mark = 'a'; mark < 'a' + threads; ++mark)
        writers.emplace_back([&, mark] {
            for (int i = 0; i < lines; ++i) log_.print(logError, std::string(40, mark));
        });
    for (std::thread& writer : writers) writer.join();
    EXPECT_EQ(overlapping, 0);
    EXPECT_EQ(log_.errorCount(), unsigned{threads * lines});
    std::map<std::string, int> written, expected;
    std::istringstream bytes(today());
    for (std::string text; std::getline(bytes, text);) ++written[text + "\n"];
    for (char mark = 'a'; mark < 'a' + threads; ++mark)
        expected[line(error, std::string(40, mark))] = lines;
    EXPECT_EQ(written, expected);
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
    EXPECT_EQ(today(), line(error, "next"));
}

// The log of the process lies beside the test program.
fs::path processLogFile() {
    LogFilePath path(systemLogEnvironment());
    return path.forTime(systemLogEnvironment().localTime());
}

TEST(PrintLogTest, WritesBesideTheProgramAndABadArgumentCostsTheLineOnly) {
    const std::string mark = std::to_string(GetCurrentProcessId());
    const char* volatile nowhere = reinterpret_cast<const char*>(8);
    const fs::path before = processLogFile();
    const auto errors = processLog().errorCount();
    PrintLog(logError, "%s", nowhere);
    PrintLog(logError, "%s 设备 %04d 100%%", mark.c_str(), 7);
    EXPECT_EQ(processLog().errorCount(), errors + 1);
    // The day may have ended in between.
    const std::string bytes = fileBytes(before) + fileBytes(processLogFile());
    EXPECT_NE(bytes.find(error + mark + " \xC9\xE8\xB1\xB8 0007 100%\r\n"), std::string::npos);
    EXPECT_TRUE(before.parent_path().filename().wstring().starts_with(L"runtime_testsLog20"));
    EXPECT_EQ(before.parent_path().parent_path().filename(), L"LogFile");
    fs::remove_all(before.parent_path().parent_path());
}

}  // namespace
}  // namespace korvane
