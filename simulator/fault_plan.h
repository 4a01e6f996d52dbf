#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

enum class FaultKind {
    Loss,         // value % of all datagrams, requests and answers, get lost
    LostAnswer,   // the request is carried out, its answer is lost
    Silence,      // the request is neither carried out nor answered
    Delay,        // the answer leaves value ms later
    Late,         // likewise, by default so late that the panel has given up
    Duplicate,    // every datagram of the answer comes value times more
    WrongCode,    // the answer carries command code value
    WrongLength,  // the answer's length field says value
    WrongSize,    // the answer's payload has value bytes, and its length field says so
    WrongTotal,   // the announcement of a long answer says value bytes
    Refuse,       // not carried out; status word value
    Cut,          // a long answer stops after value datagrams behind its announcement
};

struct Fault {
    FaultKind kind = FaultKind::Loss;
    std::optional<std::uint32_t> value;    // without: the kind's own default
    std::optional<std::uint32_t> command;  // without: every command
    std::uint32_t remaining = 0;           // times it still strikes; 0: until it is cleared
};

// What a kind is called and takes.
struct FaultTraits {
    FaultKind kind;
    std::string_view name;
    std::uint32_t least, most;  // of its value; both 0: takes none
    std::string_view valueName;
    std::string_view help;
};
std::span<const FaultTraits> faultTraits();

// A fault as the command line writes it: KIND[=VALUE][@COMMAND][:COUNT], COMMAND being a code or a
// name of the command table, numbers decimal or with 0x. Nothing, and why in `error`, when it is
// none.
std::optional<Fault> parseFault(std::string_view text, std::string& error);
std::string describe(const Fault& fault);

// An unsigned number, decimal or hexadecimal with 0x; nothing when it is anything else.
std::optional<std::uint32_t> parseUnsigned(std::string_view text);

// The faults in force, in the order in which they were added.
class FaultPlan {
  public:
    void add(const Fault& fault) { faults_.push_back(fault); }
    void clear() { faults_.clear(); }
    std::size_t clear(FaultKind kind);  // how many there were

    // The first fault of this kind that is meant for the command; it has struck once more.
    std::optional<Fault> take(FaultKind kind, std::uint32_t command);

    std::span<const Fault> all() const { return faults_; }

  private:
    std::vector<Fault> faults_;
};

}  // namespace korvane
