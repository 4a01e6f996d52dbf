#include "runtime/fault_report.h"

#include <cstdarg>
#include <cstdio>

#include "runtime/structured_exception.h"

namespace nox_pub::mswin {
namespace {

// Appends one piece of at most 127 bytes.
__attribute__((format(gnu_printf, 2, 3))) void append(std::string& text, const char* format, ...) {
    char piece[128];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(piece, sizeof piece, format, arguments);
    va_end(arguments);
    text += piece;
}

unsigned number(DWORD value) {
    return value;
}

const char* nameOf(DWORD code) {
    switch (code) {
        case 0xC0000006:
            return "in page error";
        case 0xC000001D:
            return "illegal instruction";
        case 0xC0000025:
            return "noncontinuable exception";
        case 0xC0000026:
            return "invalid disposition";
        case 0xC000008C:
            return "array bounds exceeded";
        case 0xC000008D:
            return "flt denormal operand";
        case 0xC000008E:
            return "flt divide by zero";
        case 0xC000008F:
            return "flt inexact result";
        case 0xC0000090:
            return "flt invalid operation";
        case 0xC0000091:
            return "flt overflow";
        case 0xC0000092:
            return "flt stack check";
        case 0xC0000093:
            return "flt underflow";
        case 0xC0000094:
            return "int divide by zero";
        case 0xC0000095:
            return "int overflow";
        case 0xC0000096:
            return "priv instruction";
        case 0xC00000FD:
            return "stack overflow";
        case 0x80000002:
            return "datatype misalignment";
        case 0x80000003:
            return "breakpoint";
        case 0x80000004:
            return "single step";
        default:
            return nullptr;
    }
}

void appendFaultLine(std::string& text, const EXCEPTION_RECORD& record) {
    const DWORD code = record.ExceptionCode;
    if (code == EXCEPTION_ACCESS_VIOLATION) {
        // The first parameter is 0 for a read, 1 for a write, 8 for a jump.
        append(text, "SE: 内存访问错误: %s %08x",
               record.ExceptionInformation[0] == 0 ? "读 " : "写 ",
               number(record.ExceptionInformation[1]));
    } else if (const char* name = nameOf(code)) {
        append(text, "SE: %s", name);
    } else {
        append(text, "SE: unknown exception: %d", static_cast<int>(code));
    }
    text += "\r\n";
}

void appendRegisters(std::string& text, const CONTEXT& context) {
    append(text, "esp=%08x ebp=%08x esi=%08x edi=%08x\r\n", number(context.Esp),
           number(context.Ebp), number(context.Esi), number(context.Edi));
    append(text, "eax=%08x ebx=%08x ecx=%08x edx=%08x\r\n", number(context.Eax),
           number(context.Ebx), number(context.Ecx), number(context.Edx));
}

// Memory that could not be read shows as question marks, two for a byte.
void appendCode(std::string& text, const Fault& fault) {
    const auto address = reinterpret_cast<std::uintptr_t>(fault.record.ExceptionAddress);
    append(text, "code %08x(eip=%08x):\r\n", static_cast<unsigned>(address),
           number(fault.context.Eip));
    for (std::size_t i = 0; i < fault.code.size(); ++i) {
        if (i < fault.codeBytes)
            append(text, " %02x", fault.code[i]);
        else
            text += " ??";
    }
    text += "\r\n";
}

void appendStack(std::string& text, const Fault& fault) {
    constexpr std::size_t wordsPerLine = 4;
    text += "stack:\r\n";
    for (std::size_t i = 0; i < fault.stack.size(); ++i) {
        if (i < fault.stackWords)
            append(text, " %08x", fault.stack[i]);
        else
            text += " ????????";
        if (i % wordsPerLine == wordsPerLine - 1) text += "\r\n";
    }
}

}  // namespace

std::string faultReport(const Fault& fault) {
    std::string text;
    text.reserve(1024);
    appendFaultLine(text, fault.record);
    appendRegisters(text, fault.context);
    appendCode(text, fault);
    if (fault.record.ExceptionCode != EXCEPTION_STACK_OVERFLOW) appendStack(text, fault);
    return text;
}

void throwStructuredException(const Fault& fault) {
    throw StructuredException(faultReport(fault), fault.record, fault.context);
}

}  // namespace nox_pub::mswin
