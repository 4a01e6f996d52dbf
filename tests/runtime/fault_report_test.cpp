#include "runtime/fault_report.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <string>

#include "runtime/structured_exception.h"

namespace nox_pub::mswin {
namespace {

Fault sampleFault(DWORD code) {
    Fault fault{};
    fault.record.ExceptionCode = code;
    fault.record.ExceptionAddress = reinterpret_cast<void*>(0x00401234);
    fault.record.ExceptionInformation[0] = 1;
    fault.record.ExceptionInformation[1] = 0x10;
    CONTEXT& context = fault.context;
    DWORD value = 0xfffffff8;
    for (DWORD* number : {&context.Esp, &context.Ebp, &context.Esi, &context.Edi, &context.Eax,
                          &context.Ebx, &context.Ecx, &context.Edx, &context.Eip})
        *number = value++;
    fault.codeBytes = fault.code.size();
    std::iota(fault.code.begin(), fault.code.end(), std::uint8_t{0xf0});
    fault.stackWords = fault.stack.size();
    std::iota(fault.stack.begin(), fault.stack.end(), 0x1000u);
    return fault;
}

const std::string registersAndCode =
    "esp=fffffff8 ebp=fffffff9 esi=fffffffa edi=fffffffb\r\n"
    "eax=fffffffc ebx=fffffffd ecx=fffffffe edx=ffffffff\r\n"
    "code 00401234(eip=00000000):\r\n"
    " f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff\r\n";

TEST(FaultReportTest, ToTheCharacter) {
    const std::string report = faultReport(sampleFault(0xC0000005));
    EXPECT_TRUE(report.starts_with("SE: 内存访问错误: 写  00000010\r\n" + registersAndCode +
                                   "stack:\r\n"
                                   " 00001000 00001001 00001002 00001003\r\n"
                                   " 00001004 00001005 00001006 00001007\r\n"))
        << report;
    EXPECT_TRUE(report.ends_with(" 00001038 00001039 0000103a 0000103b\r\n")) << report;
    EXPECT_EQ(std::count(report.begin(), report.end(), '\n'), 21);
    // There is no stack to show after its overflow.
    EXPECT_EQ(faultReport(sampleFault(0xC00000FD)), "SE: stack overflow\r\n" + registersAndCode);
}

TEST(FaultReportTest, WhatCannotBeReadIsQuestionMarks) {
    Fault fault = sampleFault(0xC000001D);
    fault.codeBytes = 2;
    fault.stackWords = 5;
    const std::string report = faultReport(fault);
    for (const char* part : {":\r\n f0 f1 ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ?? ??\r\n",
                             "\r\n 00001004 ???????? ???????? ????????\r\n ????????"})
        EXPECT_NE(report.find(part), std::string::npos) << report;
}

TEST(FaultReportTest, TheExceptionCarriesReportRecordAndContext) {
    const Fault fault = sampleFault(0xC000001D);
    try {
        throwStructuredException(fault);
    } catch (const StructuredException& exception) {
        EXPECT_EQ(exception.what(), faultReport(fault));
        EXPECT_EQ(exception.record().ExceptionCode, 0xC000001Du);
        EXPECT_EQ(exception.context().Eax, 0xfffffffcu);
    }
}

// Of the two pages the second is made unreadable.
alignas(4096) std::uint8_t pages[2][4096];
const auto end = reinterpret_cast<std::uintptr_t>(pages[1]);

void protectSecond(DWORD protection) {
    VirtualProtect(pages[1], sizeof pages[1], protection, &protection);
}

TEST(CaptureTest, ReadsUpToWhereItCan) {
    pages[0][4095] = 7;
    std::uint8_t bytes[16];
    protectSecond(PAGE_READWRITE);
    EXPECT_EQ(readMemory(end - 4, bytes, 16), 16u);
    for (const DWORD protection : {PAGE_NOACCESS, PAGE_READWRITE | PAGE_GUARD}) {
        protectSecond(protection);
        EXPECT_EQ(readMemory(end - 4, bytes, 16), 4u);
        EXPECT_EQ(bytes[3], 7);
        EXPECT_EQ(readMemory(end, bytes, 16), 0u);
        EXPECT_EQ(readMemory(end, bytes, 16), 0u);  // a look uses no guard page up
    }
    for (const std::uintptr_t address : {0u, 0xFFFFFFF8u})
        EXPECT_EQ(readMemory(address, bytes, 16), 0u);
}

TEST(CaptureTest, CopiesWhatTheReportShows) {
    protectSecond(PAGE_NOACCESS);
    EXCEPTION_RECORD record{0xC000001D, 0, &record, nullptr, 1, {5, 6}};
    CONTEXT context{};
    context.Esp = static_cast<DWORD>(end - 10);
    context.Eip = static_cast<DWORD>(end - 3);
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
