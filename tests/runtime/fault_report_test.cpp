#include "runtime/fault_report.h"

#include <gtest/gtest.h>
#include <string>

#include "runtime/structured_exception.h"

namespace nox_pub::mswin {
namespace {

Fault sampleFault(DWORD code) {
    Fault fault{};
    fault.record.ExceptionCode = code;
    fault.record.ExceptionAddress = reinterpret_cast<void*>(0x00401234);
    fault.context.Esp = 0x0012ff00;
    fault.context.Ebp = 0x0012ff40;
    fault.context.Esi = 1;
    fault.context.Edi = 0xffffffff;
    fault.context.Eax = 0xdeadbeef;
    fault.context.Ebx = 2;
    fault.context.Ecx = 3;
    fault.context.Edx = 4;
    fault.context.Eip = 0x00401236;
    fault.codeBytes = fault.code.size();
    for (std::uint8_t i = 0; i < fault.code.size(); ++i) fault.code[i] = 0xf0 + i;
    fault.stackWords = fault.stack.size();
    for (std::uint32_t i = 0; i < fault.stack.size(); ++i) fault.stack[i] = 0x1000 + i;
    return fault;
}

std::string firstLine(const std::string& report) {
    return report.substr(0, report.find("\r\n"));
}

TEST(FaultReportTest, ToTheCharacter) {
    Fault fault = sampleFault(0xC0000005);
    fault.record.ExceptionInformation[0] = 1;
    fault.record.ExceptionInformation[1] = 0x10;
    EXPECT_EQ(faultReport(fault),
              "SE: 内存访问错误: 写  00000010\r\n"
              "esp=0012ff00 ebp=0012ff40 esi=00000001 edi=ffffffff\r\n"
              "eax=deadbeef ebx=00000002 ecx=00000003 edx=00000004\r\n"
              "code 00401234(eip=00401236):\r\n"
              " f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff\r\n"
              "stack:\r\n"
              " 00001000 00001001 00001002 00001003\r\n"
              " 00001004 00001005 00001006 00001007\r\n"
              " 00001008 00001009 0000100a 0000100b\r\n"
              " 0000100c 0000100d 0000100e 0000100f\r\n"
              " 00001010 00001011 00001012 00001013\r\n"
              " 00001014 00001015 00001016 00001017\r\n"
              " 00001018 00001019 0000101a 0000101b\r\n"
              " 0000101c 0000101d 0000101e 0000101f\r\n"
              " 00001020 00001021 00001022 00001023\r\n"
              " 00001024 00001025 00001026 00001027\r\n"
              " 00001028 00001029 0000102a 0000102b\r\n"
              " 0000102c 0000102d 0000102e 0000102f\r\n"
              " 00001030 00001031 00001032 00001033\r\n"
              " 00001034 00001035 00001036 00001037\r\n"
              " 00001038 00001039 0000103a 0000103b\r\n");
    fault.record.ExceptionInformation[0] = 0;
    EXPECT_EQ(firstLine(faultReport(fault)), "SE: 内存访问错误: 读  00000010");
}

TEST(FaultReportTest, NamesEachFault) {
    const struct {
        DWORD code;
        const char* line;
    } cases[] = {
        {0xC0000006, "SE: in page error"},
        {0xC000001D, "SE: illegal instruction"},
        {0xC0000025, "SE: noncontinuable exception"},
        {0xC0000026, "SE: invalid disposition"},
        {0xC000008C, "SE: array bounds exceeded"},
        {0xC000008D, "SE: flt denormal operand"},
        {0xC000008E, "SE: flt divide by zero"},
        {0xC000008F, "SE: flt inexact result"},
        {0xC0000090, "SE: flt invalid operation"},
        {0xC0000091, "SE: flt overflow"},
        {0xC0000092, "SE: flt stack check"},
        {0xC0000093, "SE: flt underflow"},
        {0xC0000094, "SE: int divide by zero"},
        {0xC0000095, "SE: int overflow"},
        {0xC0000096, "SE: priv instruction"},
        {0xC00000FD, "SE: stack overflow"},
        {0x80000002, "SE: datatype misalignment"},
        {0x80000003, "SE: breakpoint"},
        {0x80000004, "SE: single step"},
        {0xC0000017, "SE: unknown exception: -1073741801"},
    };
    for (const auto& [code, line] : cases)
        EXPECT_EQ(firstLine(faultReport(sampleFault(code))), line);
}

TEST(FaultReportTest, AStackOverflowShowsNoStack) {
    const std::string report = faultReport(sampleFault(0xC00000FD));
    EXPECT_EQ(report.find("stack:"), std::string::npos);
    EXPECT_TRUE(report.ends_with(" fc fd fe ff\r\n"));
}

TEST(FaultReportTest, WhatCannotBeReadIsQuestionMarks) {
    Fault fault = sampleFault(0xC000001D);
    fault.codeBytes = 2;
    fault.stackWords = 5;
    const std::string report = faultReport(fault);
    EXPECT_NE(report.find(":\r\n f0 f1 ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ??\r\n"),
              std::string::npos);
    EXPECT_NE(report.find("\r\n 00001004 ???????? ???????? ????????\r\n ????????"),
              std::string::npos);
}

TEST(FaultReportTest, TheExceptionCarriesReportRecordAndContext) {
    const Fault fault = sampleFault(0xC000001D);
    try {
        throwStructuredException(fault);
    } catch (const std::logic_error& error) {
        EXPECT_EQ(error.what(), faultReport(fault));
        const auto& exception = dynamic_cast<const StructuredException&>(error);
        EXPECT_EQ(exception.record().ExceptionCode, 0xC000001Du);
        EXPECT_EQ(exception.context().Eax, 0xdeadbeefu);
    }
}

// Two pages, of which the second is made unreadable.
class CaptureTest : public testing::Test {
  protected:
    ~CaptureTest() override { VirtualFree(pages_, 0, MEM_RELEASE); }

    std::uintptr_t end() const { return reinterpret_cast<std::uintptr_t>(pages_) + pageSize; }
    void protectSecond(DWORD protection) {
        DWORD previous;
        VirtualProtect(pages_ + pageSize, pageSize, protection, &previous);
    }

    static constexpr std::size_t pageSize = 4096;
    std::uint8_t* pages_ =
        static_cast<std::uint8_t*>(VirtualAlloc(nullptr, 2 * pageSize, MEM_COMMIT, PAGE_READWRITE));
};

TEST_F(CaptureTest, ReadsUpToWhereItCan) {
    pages_[pageSize - 1] = 7;
    std::uint8_t bytes[16];
    EXPECT_EQ(readMemory(end() - 4, bytes, 16), 16u);
    for (const DWORD protection : {DWORD{PAGE_NOACCESS}, DWORD{PAGE_READWRITE | PAGE_GUARD}}) {
        protectSecond(protection);
        EXPECT_EQ(readMemory(end() - 4, bytes, 16), 4u);
        EXPECT_EQ(bytes[3], 7);
        EXPECT_EQ(readMemory(end(), bytes, 16), 0u);
        EXPECT_EQ(readMemory(end(), bytes, 16), 0u);  // a look uses no guard page up
    }
    EXPECT_EQ(readMemory(0, bytes, 16), 0u);
    EXPECT_EQ(readMemory(0xFFFFFFF8, bytes, 16), 0u);
}

TEST_F(CaptureTest, CopiesWhatTheReportShows) {
    protectSecond(PAGE_NOACCESS);
    EXCEPTION_RECORD record{}, nested{};
    record.ExceptionCode = 0xC000001D;
    record.ExceptionRecord = &nested;
    record.NumberParameters = 1;
    record.ExceptionInformation[0] = 5;
    record.ExceptionInformation[1] = 6;
    CONTEXT context{};
    context.Esp = static_cast<DWORD>(end() - 10);
    context.Eip = static_cast<DWORD>(end() - 3);
    Fault fault;
    captureFault(record, context, fault);
    EXPECT_EQ(fault.codeBytes, 3u);
    EXPECT_EQ(fault.stackWords, 2u);
    EXPECT_EQ(fault.record.ExceptionRecord, nullptr);
    EXPECT_EQ(fault.record.ExceptionInformation[0], 5u);
    EXPECT_EQ(fault.record.ExceptionInformation[1], 0u);  // beyond the count, and so garbage
    record.ExceptionCode = EXCEPTION_STACK_OVERFLOW;
    captureFault(record, context, fault);
    EXPECT_EQ(fault.stackWords, 0u);
}

}  // namespace
}  // namespace nox_pub::mswin
