#pragma once

#include "ui/form_dialog.h"

namespace korvane {

// Tells the runner which forms have windows of their own.
void useEditorWindows(WindowFormRunner& forms);

}  // namespace korvane
