#include <signal.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "cli/system.h"
#include "device/icmp_socket.h"

namespace korvane::cli::system {
namespace {

volatile sig_atomic_t interruptAsked = 0;

int descriptorOf(Stream stream) {
    return stream == Stream::Answer ? STDOUT_FILENO : STDERR_FILENO;
}

void noteInterrupt(int) {
    interruptAsked = 1;
}

}  // namespace

bool isTerminal(Stream stream) {
    return isatty(descriptorOf(stream)) != 0;
}

bool write(Stream stream, std::string_view utf8) {
    while (!utf8.empty()) {
        const ssize_t written = ::write(descriptorOf(stream), utf8.data(), utf8.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) utf8.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool readLine(std::string& utf8) {
    utf8.clear();
    char letter = 0;
    while (::read(STDIN_FILENO, &letter, 1) == 1) {
        if (letter == '\n') return true;
        utf8 += letter;
    }
    return !utf8.empty() && !interrupted();
}

std::string readAll() {
    std::string text;
    std::array<char, 65536> piece;
    for (ssize_t size = 1; size > 0 && !interrupted();) {
        size = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (size > 0) text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
}

std::vector<std::string> arguments(int count, char** values) {
    return {values + (count > 0 ? 1 : 0), values + count};
}

// Without restarting: a question that waits for its answer is given up.
void catchInterrupts() {
    struct sigaction action {};
    action.sa_handler = &noteInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    // Whoever reads the notes may go away amid a save; the save goes on.
    signal(SIGPIPE, SIG_IGN);
}

bool interrupted() {
    return interruptAsked != 0;
}

bool answersEcho(const std::string& host) {
    return echoOf(host) != Echo::None;
}

}  // namespace korvane::cli::system
