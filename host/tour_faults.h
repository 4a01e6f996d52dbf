#pragma once

namespace korvane::host {

class Tour;

// What the monitoring page, which is open, shows when all is not well. Both tell a simulated device
// so.
void visitAlarms(Tour& tour);
void visitLostLink(Tour& tour);

}  // namespace korvane::host
