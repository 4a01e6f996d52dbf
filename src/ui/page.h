#pragma once

#include "ui/dialog.h"
#include "ui/page_content.h"

namespace korvane {

// A borderless child dialog that shows part of the configuration or of the device's state.
class Page : public Dialog, public PageContent {
  public:
    using Dialog::Dialog;
};

}  // namespace korvane
