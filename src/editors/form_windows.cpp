#include "editors/form_windows.h"

namespace korvane {

void useEditorWindows(WindowFormRunner&) {}

}  // namespace korvane
