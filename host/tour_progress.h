#pragma once

#include <string>

namespace korvane::host {

class Tour;

// Waits for the progress dialog of a transfer, and until it is gone. NAME is its picture; how many
// percentages it went through is noted.
void watchProgress(Tour& tour, const std::string& name);

}  // namespace korvane::host
