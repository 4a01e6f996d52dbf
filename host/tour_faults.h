#pragma once

namespace korvane::host {

class Tour;

// What the monitoring page, which is open, shows when all is not well. Both need a simulated device
// that can be told so; without one they note that and do nothing.
void visitAlarms(Tour& tour);
void visitLostLink(Tour& tour);

}  // namespace korvane::host
