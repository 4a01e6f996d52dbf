#include "cli/exit_code.h"

#include "device/device_client.h"

namespace korvane::cli {

ExitCode exitCodeOf(int result) {
    switch (result) {
        case link_result::noAnswer:
        case link_result::openFailed:
        case link_result::unreachable:
            return ExitCode::NoAnswer;
        default:
            return ExitCode::Refused;
    }
}

std::string failureText(int result, std::string_view step, std::string_view address) {
    const std::string what(step), device(address);
    if (result > 0) return device + " refused " + what + " with status " + std::to_string(result);
    switch (result) {
        case link_result::noAnswer:
            return "no answer to " + what + " from " + device;
        case link_result::unreachable:
            return "no answer to " + what + " from " + device +
                   ", which does not answer an echo either (连接设备失败,请检查网络连接)";
        case link_result::openFailed:
            return "no socket could be opened";
        case link_result::wrongLength:
            return device + " answered " + what + " with a wrong length";
        default:
            return device + " did not answer " + what + " as it should, or it could not be sent";
    }
}

}  // namespace korvane::cli
