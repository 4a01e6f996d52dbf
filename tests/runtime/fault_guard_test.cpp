#include "runtime/fault_guard.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <gtest/gtest.h>
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

// A function of these instructions alone, which leave the stack pointer where it was.
#define ASM(code) [] { asm volatile(code : : : "eax", "cc", "memory"); }
// Loads the x87's control word, to unmask one kind of fault.
#define X87_CONTROL(word) "fninit\n\tpushl $" word "\n\tfldcw (%%esp)\n\tpopl %%eax\n\t"

NOT_INLINE void illegalInstruction() {
    asm volatile("ud2");
}
NOT_INLINE void divideByZero() {
    asm volatile("" : : "r"(7 / zero));
}
NOT_INLINE void callNull() {
    pointerTo<void()>(0)();
}
NOT_INLINE void systemReads() {
    std::size_t (*volatile length)(const char*) = &std::strlen;
    asm volatile("" : : "r"(length(pointerTo<const char>(8))));
}
NOT_INLINE void faultInCallback() {
    int numbers[] = {2, 1};
    std::qsort(numbers, 2, sizeof(int), [](const void*, const void*) -> int {
        illegalInstruction();
        return 0;
    });
}
struct FaultyEnd {
    ~FaultyEnd() { divideByZero(); }
};
NOT_INLINE void overflowStack() {
    char frame[512];
    void (*volatile again)() = &overflowStack;
    again();
    asm volatile("" : : "r"(frame));  // the call is not the last thing done
}

struct FaultKind {
    const char* line;  // how the report begins, behind "SE: "
    void (*provoke)();
};

class FaultGuardTest : public testing::Test {
  protected:
    ~FaultGuardTest() override { asm volatile("fninit"); }

    static void expectReported(const StructuredException& exception, const FaultKind& kind) {
        const std::string report = exception.what();
        EXPECT_TRUE(report.starts_with(std::string("SE: ") + kind.line)) << report;
    }
    static void expectNothingLeftBehind() {
        EXPECT_EQ(std::current_exception(), nullptr);
        EXPECT_EQ(std::uncaught_exceptions(), 0);
    }

    TranslatorScope translator_{&throwStructuredException};
};

const FaultKind unwindableKinds[] = {
    {"内存访问错误: 读  00000000\r\n", ASM("movl 0, %%eax")},
    {"内存访问错误: 写  00000010\r\n", ASM("movl $1, 0x10")},
    {"内存访问错误: ", &callNull},
    {"int overflow\r\n", ASM("movl $0x7fffffff, %%eax\n\taddl $1, %%eax\n\tinto")},
    {"illegal instruction\r\n", ASM("std\n\tud2")},  // amid a backward copy
    {"breakpoint\r\n", ASM("int3")},
    {"single step\r\n", ASM("pushfl\n\torl $0x100, (%%esp)\n\tpopfl\n\tnop\n\tnop")},
    {"flt divide by zero\r\n", ASM(X87_CONTROL("0x037B") "fld1\n\tfldz\n\tfdivrp\n\tfwait")},
    {"flt inexact result\r\n", ASM(X87_CONTROL("0x035F") "fldpi\n\tfsqrt\n\tfwait")},
    {"flt stack check\r\n", ASM(X87_CONTROL("0x037E") "fstp %%st(0)\n\tfwait")},
};

TEST_F(FaultGuardTest, AFaultIsCaughtByTheNearestHandlerWithDestructorsRun) {
    struct Witness {
        int& destroyed;
        ~Witness() { ++destroyed; }
    };
    for (const FaultKind& kind : unwindableKinds) {
        SCOPED_TRACE(kind.line);
        int destroyed = 0, caught = 0;
        const auto faultyWork = [&] {
            const Witness witness{destroyed};
            kind.provoke();
        };
        auto work = [&] {
            for (int round = 0; round < 3; ++round) {
                try {
                    faultyWork();
                } catch (const std::logic_error& exception) {
                    asm volatile("fwait");  // must not raise an arithmetic fault again
                    ++caught;
                    expectReported(dynamic_cast<const StructuredException&>(exception), kind);
                }
                expectNothingLeftBehind();
            }
            faultyWork();  // nobody but the guard's caller takes this one
        };
        EXPECT_THROW(guarded(work), StructuredException);
        EXPECT_EQ(caught, 3);
        EXPECT_EQ(destroyed, 4);
        expectNothingLeftBehind();
    }
}

// Faults where the frames between cannot be unwound.
const FaultKind otherKinds[] = {
    {"内存访问错误: ", ASM("pushl $0\n\txorl %%eax, %%eax\n\tjmp *%%eax")},
    {"内存访问错误: 读  00000008\r\n", &systemReads},
    {"内存访问错误: 读  00000008\r\n", [] { pointerTo<std::ostream>(8)->flush(); }},
    {"unknown exception: -1073741801\r\n", [] { RaiseException(0xC0000017, 0, 0, nullptr); }},
    {"noncontinuable exception\r\n",
     [] { RaiseException(0xC0000025, EXCEPTION_NONCONTINUABLE, 0, nullptr); }},
    {"illegal instruction\r\n", &faultInCallback},
    {"int divide by zero\r\n", [] { const FaultyEnd faulty; }},
    {"stack overflow\r\n", &overflowStack},
};

TEST_F(FaultGuardTest, AFaultOutsideOurCodeArrivesAtTheCallerOfTheInnermostGuard) {
    bool caughtInside = false;
    for (const FaultKind& kind : otherKinds) {
        SCOPED_TRACE(kind.line);
        auto faultInHandler = [&] {
            // A handler that is being run when the fault happens must not stay so.
            try {
                throw 1;
            } catch (int) {
                try {
                    kind.provoke();
                } catch (...) {
                    caughtInside = true;
                }
            }
        };
        guarded([&] {
            for (int round = 0; round < 3; ++round) {
                try {
                    guarded(faultInHandler);
                    ADD_FAILURE();
                } catch (const StructuredException& exception) {
                    expectReported(exception, kind);
                }
                expectNothingLeftBehind();
            }
            EXPECT_THROW(illegalInstruction(), StructuredException);
        });
    }
    EXPECT_FALSE(caughtInside);
}

std::string reportOf(void (*provoke)()) {
    try {
        guarded(provoke);
    } catch (const StructuredException& exception) {
        return exception.what();
    }
    return {};
}

// The frames are gone, and written over, when the report is made.
TEST_F(FaultGuardTest, TheReportShowsCodeAndStackAsTheyWereAtTheFault) {
    const FaultKind cases[] = {
        {"):\r\n 0f 0b ", &illegalInstruction},  // ud2
        {"(eip=00000000):\r\n ?? ?? ", &callNull},
        {"stack:\r\n 5eed0001 5eed0002 ",
         ASM("pushl $0x5eed0002\n\tpushl $0x5eed0001\n\txorl %%eax, %%eax\n\tjmp *%%eax")}};
    for (const auto& [part, provoke] : cases)
        EXPECT_NE(reportOf(provoke).find(part), std::string::npos) << reportOf(provoke);
}

TEST_F(FaultGuardTest, WhatTheSystemOrTheLanguageDealsWithPasses) {
    EXPECT_THROW(guarded([] { throw 7; }), int);
    EXPECT_THROW(guarded([] { throw std::runtime_error("plain"); }), std::runtime_error);
    guarded([] {
        EXPECT_EQ(lstrlenA(pointerTo<const char>(8)), 0);
        EXPECT_TRUE(IsBadReadPtr(pointerTo<void>(8), 4));
        OutputDebugStringA("for nobody");
        OutputDebugStringW(L"for nobody");
        EXPECT_THROW(throw 7, int);
    });
}

// The last resort of a process: notes what no handler has taken, and carries on.
std::vector<DWORD> offered;
LONG WINAPI noteOffered(EXCEPTION_POINTERS* exception) {
    offered.push_back(exception->ExceptionRecord->ExceptionCode);
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST_F(FaultGuardTest, WhatIsNoFaultOfATranslatedThreadGoesToTheHost) {
    const std::vector<DWORD> codes = {0xE06D7363, 0xE0434352, 0x0EEDFADE,
                                      0x20474343, 0xC0000017, 0xC0000018};
    const auto previous = SetUnhandledExceptionFilter(&noteOffered);
    guarded([&] {
        for (std::size_t i = 0; i < 4; ++i) RaiseException(codes[i], 0, 0, nullptr);
        const TranslatorScope none(nullptr);
        RaiseException(codes[4], 0, 0, nullptr);
    });
    RaiseException(codes[5], 0, 0, nullptr);  // no guard stands any more
    SetUnhandledExceptionFilter(previous);
    EXPECT_EQ(offered, codes);
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
    if (++translations == 1) *pointerTo<volatile int>(0x10) = 1;
    throwStructuredException(fault);
}

TEST_F(FaultGuardTest, AFaultOfTheTranslatorDoesNotHideTheFirst) {
    const TranslatorScope faulty(&faultyTranslator);
    EXPECT_TRUE(reportOf(&illegalInstruction).starts_with("SE: illegal instruction\r\n"));
    EXPECT_EQ(translations, 2);
}

TEST_F(FaultGuardTest, ManyThreadsFaultAtOnce) {
    const FaultKind kinds[] = {{"SE: int divide by zero\r\n", &divideByZero},
                               {"SE: 内存访问错误: 读  00000008\r\n", &systemReads},
                               {"SE: stack overflow\r\n", &overflowStack}};
    constexpr int threads = 8, rounds = 300;
    std::atomic<int> right{0};
    std::vector<std::thread> running;
    for (int i = 0; i < threads; ++i) {
        running.emplace_back([&, i] {
            const TranslatorScope translator(&throwStructuredException);
            for (int round = i; round < i + rounds; ++round) {
                const auto& [line, provoke] = kinds[round % 100 == 10 ? 2 : round % 2];
                right += reportOf(provoke).starts_with(line);
            }
        });
    }
    for (std::thread& thread : running) thread.join();
    EXPECT_EQ(right, threads * rounds);
}

}  // namespace
}  // namespace nox_pub::mswin
