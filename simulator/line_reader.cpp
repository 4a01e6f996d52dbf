#include "simulator/line_reader.h"

#include <deque>
#include <iostream>
#include <mutex>
#include <thread>

namespace korvane {

struct LineReader::Queue {
    std::mutex mutex;
    std::deque<std::string> lines;
};

LineReader::LineReader() : queue_(std::make_shared<Queue>()) {
    std::thread([queue = queue_] {
        std::string line;
        while (std::getline(std::cin, line)) {
            const std::lock_guard lock(queue->mutex);
            queue->lines.push_back(line);
        }
    }).detach();
}

std::optional<std::string> LineReader::next() {
    const std::lock_guard lock(queue_->mutex);
    if (queue_->lines.empty()) return std::nullopt;
    std::string line = std::move(queue_->lines.front());
    queue_->lines.pop_front();
    return line;
}

}  // namespace korvane
