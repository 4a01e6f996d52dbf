#pragma once

#include <string>

#include "ui/dialog.h"

namespace korvane {

class AboutDialog : public Dialog {
  public:
    // `deviceVersion`: the line about the device, see deviceVersionText.
    explicit AboutDialog(std::string deviceVersion);

  protected:
    bool onInit() override;

  private:
    std::string deviceVersion_;
};

}  // namespace korvane
