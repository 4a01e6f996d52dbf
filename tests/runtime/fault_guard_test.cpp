#include "runtime/fault_guard.h"

#include <cstdlib>
#include <cstring>
#include <exception>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "runtime/fault_report.h"
#include "runtime/structured_exception.h"

namespace nox_pub::mswin {
namespace {

#define NOT_INLINE __attribute__((noinline))

// What the compiler must not know.
volatile std::uintptr_t nowhere = 0;
volatile int zero = 0;

template <class T>
T* pointerTo(std::uintptr_t address) {
    return reinterpret_cast<T*>(address + nowhere);
}

struct Animal {
    virtual ~Animal() = default;
    virtual int legs() = 0;
};

// Unmasks one kind of x87 fault.
void unmaskFloat(unsigned short bit) {
    const auto control = static_cast<unsigned short>(0x037F & ~bit);
    asm volatile("fninit\n\tfldcw %0" : : "m"(control));
}

NOT_INLINE void readNull() {
    asm volatile("" : : "r"(*pointerTo<int>(0)));
}
NOT_INLINE void writeLow() {
    *pointerTo<volatile int>(0x10) = 1;
}
NOT_INLINE void callVirtual() {
    pointerTo<Animal>(0)->legs();
}
NOT_INLINE void divideByZero() {
    asm volatile("" : : "r"(7 / zero));
}
NOT_INLINE void overflowInt() {
    asm volatile("movl $0x7fffffff, %%eax\n\taddl $1, %%eax\n\tinto" : : : "eax");
}
NOT_INLINE void illegalInstruction() {
    asm volatile("ud2");
}
NOT_INLINE void illegalInBackwardCopy() {
    asm volatile("std\n\tud2");
}
NOT_INLINE void privilegedInstruction() {
    asm volatile("hlt");
}
NOT_INLINE void breakpoint() {
    asm volatile("int3");
}
NOT_INLINE void singleStep() {
    asm volatile("pushfl\n\torl $0x100, (%%esp)\n\tpopfl\n\tnop\n\tnop" : : : "cc", "memory");
}
NOT_INLINE void arrayBounds() {
    static const int bounds[2] = {0, 3};
    asm volatile("bound %0, %1" : : "r"(4), "m"(bounds));
}
NOT_INLINE void floatDivide() {
    unmaskFloat(4);
    asm volatile("fld1\n\tfldz\n\tfdivrp\n\tfwait");
}
NOT_INLINE void floatInvalid() {
    unmaskFloat(1);
    asm volatile("fldz\n\tfldz\n\tfdivrp\n\tfwait");
}
NOT_INLINE void floatInexact() {
    unmaskFloat(0x20);
    asm volatile("fldpi\n\tfsqrt\n\tfwait");
}
NOT_INLINE void floatStack() {
    unmaskFloat(1);
    asm volatile("fstp %st(0)\n\tfwait");
}
NOT_INLINE void floatDenormal() {
    static const double tiny = std::numeric_limits<double>::denorm_min();
    unmaskFloat(2);
    asm volatile("fldl %0\n\tfwait" : : "m"(tiny));
}
NOT_INLINE void floatOverflow() {
    static const double large = std::numeric_limits<double>::max();
    double out;
    unmaskFloat(8);
    asm volatile("fldl %1\n\tfmull %1\n\tfstpl %0\n\tfwait" : "=m"(out) : "m"(large));
}
NOT_INLINE void floatUnderflow() {
    static const double small = std::numeric_limits<double>::min();
    double out;
    unmaskFloat(0x10);
    asm volatile("fldl %1\n\tfmull %1\n\tfstpl %0\n\tfwait" : "=m"(out) : "m"(small));
}
NOT_INLINE void callNull() {
    pointerTo<void()>(0)();
}
NOT_INLINE void callData() {
    static char data[16] = {static_cast<char>(0xC3)};
    pointerTo<void()>(reinterpret_cast<std::uintptr_t>(data))();
}

// Faults where the frames between cannot be unwound.
NOT_INLINE void jumpNowhere() {
    asm volatile("pushl $0\n\tjmp *%0" : : "r"(nowhere));
}
NOT_INLINE void systemReads() {
    std::size_t (*volatile length)(const char*) = &std::strlen;
    asm volatile("" : : "r"(length(pointerTo<const char>(8))));
}
NOT_INLINE void languageLibraryReads() {
    pointerTo<std::ostream>(8)->flush();
}
NOT_INLINE void systemRaises() {
    RaiseException(0xC0000017, 0, 0, nullptr);
}
NOT_INLINE void systemRaisesForGood() {
    RaiseException(0xC0000025, EXCEPTION_NONCONTINUABLE, 0, nullptr);
}
NOT_INLINE void faultInCallback() {
    int numbers[] = {2, 1};
    std::qsort(numbers, 2, sizeof(int), [](const void*, const void*) -> int {
        illegalInstruction();
        return 0;
    });
}
struct FaultyEnd {
    ~FaultyEnd() { privilegedInstruction(); }
};
NOT_INLINE void faultInDestructor() {
    const FaultyEnd faulty;
}
NOT_INLINE void throughNoexcept() noexcept {
    divideByZero();
}
int deeper(volatile char* above);
int (*volatile const next)(volatile char*) = &deeper;
NOT_INLINE int deeper(volatile char* above) {
    volatile char frame[512];
    frame[0] = above[0];
    return next(frame) + frame[0];
}
NOT_INLINE void overflowStack() {
    volatile char bottom[1] = {0};
    deeper(bottom);
}

struct Witness {
    explicit Witness(int& counter) : counter_(counter) {}
    ~Witness() { ++counter_; }
    int& counter_;
};

struct FaultKind {
    const char* name;
    void (*provoke)();
    DWORD code;
    const char* line;  // how the report begins
};
void PrintTo(const FaultKind& kind, std::ostream* out) {
    *out << kind.name;
}

class FaultTest : public testing::TestWithParam<FaultKind> {
  protected:
    ~FaultTest() override { asm volatile("fninit"); }

    void expectReported(const StructuredException& exception) {
        EXPECT_EQ(exception.record().ExceptionCode, GetParam().code);
        EXPECT_EQ(std::string(exception.what()).find(GetParam().line), 0u) << exception.what();
    }
    void expectNothingLeftBehind() {
        EXPECT_EQ(std::current_exception(), nullptr);
        EXPECT_EQ(std::uncaught_exceptions(), 0);
    }

    TranslatorScope translator_{&throwStructuredException};
};

class UnwindableFaultTest : public FaultTest {};

TEST_P(UnwindableFaultTest, IsCaughtByTheNearestHandlerWithDestructorsRun) {
    for (int round = 0; round < 3; ++round) {
        int destroyed = 0;
        bool caught = false, wentOn = false;
        guarded([&] {
            try {
                const Witness witness(destroyed);
                GetParam().provoke();
            } catch (const std::logic_error& exception) {
                asm volatile("fwait");  // must not raise an arithmetic fault again
                caught = true;
                expectReported(dynamic_cast<const StructuredException&>(exception));
            }
            wentOn = true;
        });
        EXPECT_TRUE(caught);
        EXPECT_TRUE(wentOn);
        EXPECT_EQ(destroyed, 1);
        expectNothingLeftBehind();
    }
}

TEST_P(UnwindableFaultTest, PassesTheGuardWhenNobodyInsideTakesIt) {
    int destroyed = 0;
    try {
        guarded([&] {
            const Witness witness(destroyed);
            GetParam().provoke();
        });
        ADD_FAILURE();
    } catch (const StructuredException& exception) {
        expectReported(exception);
    }
    EXPECT_EQ(destroyed, 1);
    expectNothingLeftBehind();
}

const FaultKind unwindableKinds[] = {
    {"readNull", &readNull, 0xC0000005, "SE: 内存访问错误: 读  00000000\r\n"},
    {"writeLow", &writeLow, 0xC0000005, "SE: 内存访问错误: 写  00000010\r\n"},
    {"callVirtual", &callVirtual, 0xC0000005, "SE: 内存访问错误: "},
    {"divideByZero", &divideByZero, 0xC0000094, "SE: int divide by zero\r\n"},
    {"overflowInt", &overflowInt, 0xC0000095, "SE: int overflow\r\n"},
    {"illegalInstruction", &illegalInstruction, 0xC000001D, "SE: illegal instruction\r\n"},
    {"illegalInBackwardCopy", &illegalInBackwardCopy, 0xC000001D, "SE: illegal instruction\r\n"},
    {"privilegedInstruction", &privilegedInstruction, 0xC0000096, "SE: priv instruction\r\n"},
    {"breakpoint", &breakpoint, 0x80000003, "SE: breakpoint\r\n"},
    {"singleStep", &singleStep, 0x80000004, "SE: single step\r\n"},
    {"arrayBounds", &arrayBounds, 0xC000008C, "SE: array bounds exceeded\r\n"},
    {"floatDenormal", &floatDenormal, 0xC000008D, "SE: flt denormal operand\r\n"},
    {"floatDivide", &floatDivide, 0xC000008E, "SE: flt divide by zero\r\n"},
    {"floatInexact", &floatInexact, 0xC000008F, "SE: flt inexact result\r\n"},
    {"floatInvalid", &floatInvalid, 0xC0000090, "SE: flt invalid operation\r\n"},
    {"floatOverflow", &floatOverflow, 0xC0000091, "SE: flt overflow\r\n"},
    {"floatStack", &floatStack, 0xC0000092, "SE: flt stack check\r\n"},
    {"floatUnderflow", &floatUnderflow, 0xC0000093, "SE: flt underflow\r\n"},
    {"callNull", &callNull, 0xC0000005, "SE: 内存访问错误: "},
    {"callData", &callData, 0xC0000005, "SE: 内存访问错误: "},
};

std::string nameOf(const testing::TestParamInfo<FaultKind>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, UnwindableFaultTest, testing::ValuesIn(unwindableKinds), nameOf);

class OtherFaultTest : public FaultTest {};

TEST_P(OtherFaultTest, ArrivesAtTheGuardsCaller) {
    for (int round = 0; round < 3; ++round) {
        bool caughtInside = false;
        try {
            guarded([&] {
                // A handler that is being run when the fault happens must not stay so.
                try {
                    throw 1;
                } catch (int) {
                    try {
                        GetParam().provoke();
                    } catch (...) {
                        caughtInside = true;
                    }
                }
            });
            ADD_FAILURE();
        } catch (const StructuredException& exception) {
            expectReported(exception);
        }
        EXPECT_FALSE(caughtInside);
        expectNothingLeftBehind();
    }
}

TEST_P(OtherFaultTest, StopsAtTheInnermostGuard) {
    bool wentOn = false;
    guarded([&] {
        try {
            guarded([&] { GetParam().provoke(); });
        } catch (const StructuredException& exception) {
            expectReported(exception);
        }
        try {
            illegalInstruction();
        } catch (const StructuredException&) {
            wentOn = true;
        }
    });
    EXPECT_TRUE(wentOn);
    expectNothingLeftBehind();
}

const FaultKind otherKinds[] = {
    {"jumpNowhere", &jumpNowhere, 0xC0000005, "SE: 内存访问错误: "},
    {"systemReads", &systemReads, 0xC0000005, "SE: 内存访问错误: 读  00000008\r\n"},
    {"languageLibraryReads", &languageLibraryReads, 0xC0000005,
     "SE: 内存访问错误: 读  00000008\r\n"},
    {"systemRaises", &systemRaises, 0xC0000017, "SE: unknown exception: -1073741801\r\n"},
    {"systemRaisesForGood", &systemRaisesForGood, 0xC0000025, "SE: noncontinuable exception\r\n"},
    {"faultInCallback", &faultInCallback, 0xC000001D, "SE: illegal instruction\r\n"},
    {"faultInDestructor", &faultInDestructor, 0xC0000096, "SE: priv instruction\r\n"},
    {"throughNoexcept", &throughNoexcept, 0xC0000094, "SE: int divide by zero\r\n"},
    {"overflowStack", &overflowStack, 0xC00000FD, "SE: stack overflow\r\n"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, OtherFaultTest, testing::ValuesIn(otherKinds), nameOf);

class FaultGuardTest : public testing::Test {
  protected:
    TranslatorScope translator_{&throwStructuredException};
};

std::string reportOf(void (*provoke)()) {
    try {
        guarded([&] { provoke(); });
    } catch (const StructuredException& exception) {
        return exception.what();
    }
    return {};
}

TEST_F(FaultGuardTest, TheReportShowsTheFaultingCode) {
    const std::string report = reportOf(&illegalInstruction);
    EXPECT_NE(report.find("):\r\n 0f 0b "), std::string::npos) << report;  // ud2
    EXPECT_NE(reportOf(&callNull).find("(eip=00000000):\r\n ?? ?? "), std::string::npos);
}

NOT_INLINE void jumpWithMarksOnStack() {
    asm volatile("pushl $0x5eed0002\n\tpushl $0x5eed0001\n\tjmp *%0" : : "r"(nowhere));
}

// The frame is gone, and written over, when the report is made.
TEST_F(FaultGuardTest, TheReportShowsTheStackAsItWasAtTheFault) {
    const std::string report = reportOf(&jumpWithMarksOnStack);
    EXPECT_NE(report.find("stack:\r\n 5eed0001 5eed0002 "), std::string::npos) << report;
}

// Whether the calling thread's stack has a guard page to notice its next overflow by.
bool stackIsGuarded() {
    char here;
    MEMORY_BASIC_INFORMATION part;
    VirtualQuery(&here, &part, sizeof part);
    const auto* address = static_cast<const char*>(part.AllocationBase);
    for (; address < &here; address += part.RegionSize) {
        VirtualQuery(address, &part, sizeof part);
        if (part.Protect & PAGE_GUARD) return true;
    }
    return false;
}

TEST_F(FaultGuardTest, ASecondStackOverflowIsCaughtToo) {
    EXPECT_EQ(reportOf(&overflowStack).find("SE: stack overflow\r\n"), 0u);
    EXPECT_TRUE(stackIsGuarded());
    const std::string report = reportOf(&overflowStack);
    EXPECT_EQ(report.find("SE: stack overflow\r\nesp="), 0u);
    EXPECT_EQ(report.find("stack:"), std::string::npos);
    std::string other;
    std::thread([&] {
        const TranslatorScope translator(&throwStructuredException);
        other = reportOf(&overflowStack);
    }).join();
    EXPECT_EQ(other.find("SE: stack overflow\r\n"), 0u);
}

TEST_F(FaultGuardTest, WhatTheSystemDealsWithPasses) {
    guarded([] {
        EXPECT_EQ(lstrlenA(pointerTo<const char>(8)), 0);
        EXPECT_TRUE(IsBadReadPtr(pointerTo<void>(8), 4));
        OutputDebugStringA("for nobody");
        OutputDebugStringW(L"for nobody");
    });
}

TEST_F(FaultGuardTest, ExceptionsOfTheLanguagePass) {
    EXPECT_THROW(guarded([] { throw 7; }), int);
    EXPECT_THROW(guarded([] { throw std::runtime_error("plain"); }), std::runtime_error);
    guarded([] {
        try {
            throw 7;
        } catch (int) {
        }
    });
}

// A handler of a host's, further out than our guard, that notes what is offered and carries on.
class HostHandler {
  public:
    HostHandler() {
        asm volatile("movl %%fs:0, %0" : "=r"(frame_.next));
        asm volatile("movl %0, %%fs:0" : : "r"(&frame_) : "memory");
    }
    ~HostHandler() { asm volatile("movl %0, %%fs:0" : : "r"(frame_.next) : "memory"); }

    const std::vector<DWORD>& offered() const { return frame_.offered; }

  private:
    struct Frame {
        void* next;
        void* handler;
        std::vector<DWORD> offered;
    };
    static EXCEPTION_DISPOSITION __cdecl note(EXCEPTION_RECORD* record, void* frame, CONTEXT*,
                                              void*) {
        static_cast<Frame*>(frame)->offered.push_back(record->ExceptionCode);
        return ExceptionContinueExecution;
    }

    Frame frame_{nullptr, reinterpret_cast<void*>(&note), {}};
};

TEST_F(FaultGuardTest, WhatIsNoFaultGoesToTheHost) {
    const std::vector<DWORD> codes = {0xE06D7363, 0xE0434352, 0x0EEDFADE, 0x20474343};
    HostHandler host;
    guarded([&] {
        for (const DWORD code : codes) RaiseException(code, 0, 0, nullptr);
    });
    EXPECT_EQ(host.offered(), codes);
}

TEST_F(FaultGuardTest, AThreadWithoutTranslatorIsNotAffected) {
    const TranslatorScope none(nullptr);
    HostHandler host;
    guarded([] { RaiseException(0xC0000017, 0, 0, nullptr); });
    EXPECT_EQ(host.offered(), std::vector<DWORD>{0xC0000017});
}

TEST_F(FaultGuardTest, ATranslatorWithoutGuardDoesNothing) {
    HostHandler host;
    guarded([] {});
    RaiseException(0xC0000017, 0, 0, nullptr);
    EXPECT_EQ(host.offered(), std::vector<DWORD>{0xC0000017});
}

[[noreturn]] void otherTranslator(const Fault& fault) {
    throw StructuredException("other", fault.record, fault.context);
}

TEST_F(FaultGuardTest, TheTranslatorIsTheThreadsOwnAndIsPutBack) {
    EXPECT_EQ(setSeTranslator(&throwStructuredException), &throwStructuredException);
    SeTranslator elsewhere = &otherTranslator;
    std::thread([&] { elsewhere = setSeTranslator(nullptr); }).join();
    EXPECT_EQ(elsewhere, nullptr);
    EXPECT_EQ(reportOf([] {
                  const TranslatorScope inner(&otherTranslator);
                  systemReads();  // abandons the scope
              }),
              "other");
    EXPECT_EQ(setSeTranslator(&throwStructuredException), &throwStructuredException);
}

int translations = 0;

[[noreturn]] void faultyTranslator(const Fault& fault) {
    if (++translations == 1) writeLow();
    throwStructuredException(fault);
}

TEST_F(FaultGuardTest, AFaultOfTheTranslatorDoesNotHideTheFirst) {
    const TranslatorScope faulty(&faultyTranslator);
    EXPECT_EQ(reportOf(&illegalInstruction).find("SE: illegal instruction\r\n"), 0u);
    EXPECT_EQ(translations, 2);
}

TEST_F(FaultGuardTest, ManyThreadsFaultAtOnce) {
    constexpr int threads = 8, rounds = 300;
    std::vector<int> wrong(threads, rounds);
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&, i] {
            const TranslatorScope translator(&throwStructuredException);
            for (int round = 0; round < rounds; ++round) {
                const bool division = (i + round) % 2 == 0;
                const std::string report = reportOf(division ? &divideByZero : &systemReads);
                const char* expected = division ? "SE: int divide" : "SE: 内存访问错误";
                if (report.find(expected) == 0) --wrong[i];
            }
        });
    }
    for (std::thread& thread : running) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(threads, 0));
}

}  // namespace
}  // namespace nox_pub::mswin
