#include "runtime/fault_guard.h"

#include <cxxabi.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <iterator>
#include <utility>

#include "runtime/structured_exception.h"

// How it works. On 32-bit x86 the system offers a fault to a chain of handlers that begins at fs:0
// and has one entry per frame that asked for it, innermost first. A guard is one such entry. When
// all frames further in have declined, its handler decides:
//
//   The place can be unwound. The handler resumes the thread in throwFault(), made to look as if
//   the faulting instruction had called it. throwFault() throws; the rest is ordinary.
//
//   It cannot. The handler has the system unwind its own chain down to the guard, then jumps to
//   where the guard was entered, and there the exception is thrown.
//
// Whether a handler further out waits for the exception need not be found out beforehand: when the
// search fails, the library calls the terminate handler with the stack still whole, and that takes
// the second way.

extern "C" const void* _Unwind_Find_FDE(void* address, void* bases);

namespace nox_pub::mswin {
namespace {

// An entry of the system's chain.
struct Registration {
    Registration* next;
    void* handler;
};

// The head of the language's per-thread state, as its binary interface lays it out.
struct ExceptionState {
    void* caught;           // stack of the exceptions whose handlers are being run
    unsigned int uncaught;  // how many are on their way to a handler
};

ExceptionState& exceptionState() {
    return *reinterpret_cast<ExceptionState*>(abi::__cxa_get_globals());
}

Registration* chain() {
    Registration* first;
    asm volatile("movl %%fs:0, %0" : "=r"(first));
    return first;
}

void setChain(Registration* first) {
    asm volatile("movl %0, %%fs:0" : : "r"(first) : "memory");
}

// A slot of the system's, as the compiler's thread_local takes memory from the heap on first use,
// which may be the moment of a fault.
class TranslatorSlot {
  public:
    ~TranslatorSlot() { TlsFree(index_); }
    SeTranslator get() const { return reinterpret_cast<SeTranslator>(TlsGetValue(index_)); }
    void set(SeTranslator translator) const {
        TlsSetValue(index_, reinterpret_cast<void*>(translator));
    }

  private:
    DWORD index_ = TlsAlloc();
};

const TranslatorSlot translatorSlot;

EXCEPTION_DISPOSITION __cdecl handleFault(EXCEPTION_RECORD* record, void* registration,
                                          CONTEXT* context, void*);

// Lives on the stack of the thread that it guards: the system accepts a registration nowhere else.
struct Guard {
    Guard() {
        asm volatile("fnstcw %0" : "=m"(floatControl));
        setChain(&registration);
    }
    ~Guard() { leave(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

    void leave() { setChain(registration.next); }

    Registration registration{chain(), reinterpret_cast<void*>(&handleFault)};  // the first member
    void* resumePoint[5];
    ExceptionState exceptions = exceptionState();
    std::uint16_t floatControl;
    volatile bool translating = false;  // from a fault until its exception has begun to unwind
    volatile bool stackUsedUp = false;
    const SeTranslator translatorAtEntry = translatorSlot.get();
    SeTranslator translator = nullptr;  // the thread's at the moment of the fault
    std::exception_ptr thrown;          // the exception that nobody but the guard can take
    Fault fault;
};

// The calling thread's innermost guard. The chain itself tells: whatever leaves a guard, orderly or
// not, takes it off the chain.
Guard* innermostGuard() {
    Registration* const end = reinterpret_cast<Registration*>(-1);
    for (Registration* entry = chain(); entry && entry != end; entry = entry->next)
        if (entry->handler == reinterpret_cast<void*>(&handleFault))
            return reinterpret_cast<Guard*>(entry);
    return nullptr;
}

bool canBeUnwound(std::uintptr_t address) {
    void* bases[3];
    return _Unwind_Find_FDE(reinterpret_cast<void*>(address), bases) != nullptr;
}

// Exceptions that are no faults: this compiler's, others', and messages to a debugger.
bool isNoFault(DWORD code) {
    static constexpr DWORD others[] = {
        0x20474343, 0x21474343, 0x22474343,  // this compiler's: throw, unwind, forced unwind
        0xE06D7363,                          // Visual C++
        0xE0434352, 0xE0434F4D,              // .NET
        0x0EEDFADE,                          // Delphi
        0x40010006, 0x4001000A,              // a string for the debugger, narrow and wide
        0x406D1388,                          // a thread's name
    };
    return std::find(std::begin(others), std::end(others), code) != std::end(others);
}

// Gives up all frames between here and the guard, and goes on in abandoned(), which entered it.
[[noreturn]] void recover(Guard& guard) {
    // System frames on the way get their chance to tidy up, and the chain is shortened. The
    // function saves no register that its callers count on.
    void* target = &guard.registration;
    asm volatile(
        "pushl %%ebp\n\t"
        "pushl $0\n\t"
        "pushl $0\n\t"
        "pushl $0\n\t"
        "pushl %0\n\t"
        "call _RtlUnwind@16\n\t"
        "popl %%ebp"
        : "+a"(target)
        :
        : "ebx", "ecx", "edx", "esi", "edi", "memory", "cc");
    __builtin_longjmp(guard.resumePoint, 1);
}

// Where a redirected thread goes on, on its own stack just below the faulting frame.
[[noreturn]] void throwFault(Guard* guard) __asm__("nox_pub_throw_fault")
    __attribute__((used, regparm(1), force_align_arg_pointer));

void throwFault(Guard* guard) {
    // Unwinding the throw begins with this destructor. Until then no handler has been found, and a
    // second fault is one of the translator's or of the search's.
    struct EndOfTranslation {
        Guard* guard;
        ~EndOfTranslation() { guard->translating = false; }
    } const end{guard};
    guard->translator(guard->fault);
    std::terminate();
}

// Pushes the return address that a call would have pushed, and goes on as throwFault(). It is done
// here, when the thread runs again, because while the handler decides, the system's own records lie
// just below the stack pointer of the fault.
__attribute__((naked)) void pushAndThrowFault() {
    asm("pushl %edx\n\tjmp nox_pub_throw_fault");
}

// The arithmetic that faulted would fault again with the first instruction of its kind.
void forgetArithmeticFault(CONTEXT& context) {
    if ((context.ContextFlags & CONTEXT_FLOATING_POINT) == CONTEXT_FLOATING_POINT) {
        context.FloatSave.StatusWord &= ~0xFFu;
        context.FloatSave.TagWord = 0xFFFF;  // all registers empty, as a function finds them
    }
    if ((context.ContextFlags & CONTEXT_EXTENDED_REGISTERS) == CONTEXT_EXTENDED_REGISTERS) {
        // In FXSAVE layout: status word at 2, tags at 4 (0 is empty), MXCSR at 24.
        context.ExtendedRegisters[2] = 0;
        context.ExtendedRegisters[4] = 0;
        context.ExtendedRegisters[24] &= static_cast<BYTE>(~0x3Fu);
    }
}

// Makes the thread go on in throwFault(&guard), called with the given return address, or with
// what is on top of the stack for one already.
void redirect(CONTEXT& context, Guard& guard, std::uintptr_t returnAddress) {
    constexpr DWORD trap = 0x100, direction = 0x400, alignmentCheck = 0x40000;
    context.Eip = returnAddress ? reinterpret_cast<std::uintptr_t>(&pushAndThrowFault)
                                : reinterpret_cast<std::uintptr_t>(&throwFault);
    context.Eax = reinterpret_cast<std::uintptr_t>(&guard);
    context.Edx = returnAddress;
    context.EFlags &= ~(trap | direction | alignmentCheck);
    forgetArithmeticFault(context);
}

bool jumpedToNowhere(const Fault& fault) {
    return fault.record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION &&
           fault.record.NumberParameters >= 2 &&
           fault.record.ExceptionInformation[1] == fault.context.Eip;
}

// Takes the first of the two ways if it is open.
bool redirectIfUnwindable(CONTEXT& context, Guard& guard) {
    // The unwinder looks one byte before each return address, to find the call. The faulting
    // instruction takes the place of the call.
    if (!jumpedToNowhere(guard.fault)) {
        if (!canBeUnwound(context.Eip)) return false;
        redirect(context, guard, context.Eip + 1);
        return true;
    }
    // A call through a bad pointer has pushed its return address already, and its caller is the
    // frame to unwind first.
    if (guard.fault.stackWords == 0 || !canBeUnwound(guard.fault.stack[0] - 1)) return false;
    redirect(context, guard, 0);
    return true;
}

__attribute__((force_align_arg_pointer))
EXCEPTION_DISPOSITION __cdecl handleFault(EXCEPTION_RECORD* record, void* registration,
                                          CONTEXT* context, void*) {
    constexpr DWORD unwinding = 0x02 | 0x04;  // called to tidy up, not to decide
    const SeTranslator translator = translatorSlot.get();
    if ((record->ExceptionFlags & unwinding) || !translator || isNoFault(record->ExceptionCode))
        return ExceptionContinueSearch;
    Guard& guard = *static_cast<Guard*>(registration);
    const bool overflow = record->ExceptionCode == EXCEPTION_STACK_OVERFLOW;
    if (overflow) guard.stackUsedUp = true;
    // The translator, or the search for a handler, has faulted: the first fault is still the one to
    // report, from a place where there is room to do so.
    if (guard.translating) recover(guard);
    guard.translator = translator;
    // Now, because the second way leaves the stack before the report is made.
    captureFault(*record, *context, guard.fault);
    // There is hardly any stack left to unwind on. And the compiler takes it that touching the
    // stack never faults, so that the tables would lead the unwinder into std::terminate.
    if (overflow) recover(guard);
    guard.translating = true;
    if (!redirectIfUnwindable(*context, guard)) recover(guard);
    return ExceptionContinueExecution;
}

// Whether this is a fault that was translated. Any other exception that reaches the terminate
// handler has deserved it.
bool isTranslatedFault(const std::exception_ptr& exception) {
    if (!exception) return false;
    try {
        std::rethrow_exception(exception);
    } catch (const StructuredException&) {
        return true;
    } catch (...) {
        return false;
    }
}

std::terminate_handler previousTerminate = nullptr;

// Nobody between the fault and the guard takes the exception: the unwinder met a frame of the
// system's, or a function that lets none out.
void recoverOrTerminate() {
    Guard* const guard = innermostGuard();
    std::exception_ptr exception = std::current_exception();
    if (guard && isTranslatedFault(exception)) {
        guard->thrown = std::move(exception);
        recover(*guard);
    }
    if (previousTerminate) previousTerminate();
    std::abort();
}

// At load time. The first look into the unwind tables sorts them, which takes memory from the heap;
// that shall not wait for a fault.
struct Installation {
    Installation() : previous(previousTerminate = std::set_terminate(&recoverOrTerminate)) {
        canBeUnwound(reinterpret_cast<std::uintptr_t>(&recoverOrTerminate));
    }
    ~Installation() { std::set_terminate(previous); }
    std::terminate_handler previous;
};

const Installation installation;

// A function of its own, and never inlined: the jump back restores no register but the frame's.
// True when `work` did not come back by itself.
__attribute__((noinline)) bool abandoned(Guard& guard, void (*work)(void*), void* argument) {
    if (__builtin_setjmp(guard.resumePoint)) return true;
    work(argument);
    return false;
}

// Puts the thread into the state in which it entered the guard.
void restoreThread(Guard& guard) {
    asm volatile("cld\n\tfninit\n\tfldcw %0" : : "m"(guard.floatControl) : "memory");
    // Before anything else can fault: what faults from here on is for the guard further out.
    guard.leave();
    translatorSlot.set(guard.translatorAtEntry);
    // Handlers that were jumped over still count as running.
    ExceptionState& state = exceptionState();
    while (state.caught && state.caught != guard.exceptions.caught) abi::__cxa_end_catch();
    state.uncaught = guard.exceptions.uncaught;
    // Without its guard page back, the stack's next overflow would end the process.
    if (guard.stackUsedUp) _resetstkoflw();
}

}  // namespace

SeTranslator setSeTranslator(SeTranslator translator) noexcept {
    const SeTranslator previous = translatorSlot.get();
    translatorSlot.set(translator);
    return previous;
}

void runGuarded(void (*work)(void*), void* argument) {
    // What the system sets aside of the stack for the handling of its overflow, in bytes.
    ULONG reserve = 16384;
    SetThreadStackGuarantee(&reserve);
    Guard guard;
    if (!abandoned(guard, work, argument)) return;
    restoreThread(guard);
    if (guard.thrown) std::rethrow_exception(std::exchange(guard.thrown, nullptr));
    guard.translator(guard.fault);
    std::terminate();
}

}  // namespace nox_pub::mswin
