#pragma once

#include <memory>
#include <type_traits>

#include "runtime/fault.h"

// Faults of the processor or the system as exceptions of the language, which this compiler has no
// option for. Where a guard stands and its thread has a translator, a fault in the guarded work
//
// - arrives at the handlers around the faulting place, with all destructors run, when it happened
//   in code that can be unwound: all of ours, which must be compiled with -fnon-call-exceptions and
//   -fasynchronous-unwind-tables;
// - arrives at the caller of guarded() when it happened where nothing can be unwound: in a system
//   library, behind a jump to nowhere, with the stack used up, in a destructor, or in a function
//   of ours that a system library called. What stood between is abandoned, and no destructor of
//   it runs.
//
// So a guard belongs at a thread's entry, and around each piece of work after which its thread
// wants to go on whatever happened. A fault while a system library holds a lock leaves it held.
//
// Not touched: faults that handlers of the system further in deal with, exceptions of this and
// other languages, messages to a debugger, and all that happens on threads without a translator.

namespace nox_pub::mswin {

// Turns a fault into an exception: never returns, and throws StructuredException or a type derived
// from it.
using SeTranslator = void (*)(const Fault& fault);

// The calling thread's translator from now on (null: none), at first none. Returns the previous
// one. The runtime's own function of such a name serves another compiler's exceptions: frames that
// a host built with that compiler has on our thread must never see ours.
SeTranslator setSeTranslator(SeTranslator translator) noexcept;

// A translator for a while.
class TranslatorScope {
  public:
    explicit TranslatorScope(SeTranslator translator) : previous_(setSeTranslator(translator)) {}
    ~TranslatorScope() { setSeTranslator(previous_); }
    TranslatorScope(const TranslatorScope&) = delete;
    TranslatorScope& operator=(const TranslatorScope&) = delete;

  private:
    SeTranslator previous_;
};

void runGuarded(void (*work)(void*), void* argument);

// Calls `work` with a guard around it. Guards can be nested. Exceptions pass.
template <class Work>
void guarded(Work&& work) {
    using Callable = std::remove_reference_t<Work>;
    runGuarded([](void* callable) { (*static_cast<Callable*>(callable))(); }, std::addressof(work));
}

}  // namespace nox_pub::mswin
