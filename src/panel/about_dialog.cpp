#include "panel/about_dialog.h"

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {

AboutDialog::AboutDialog(std::string deviceVersion)
    : Dialog(IDD_ABOUT), deviceVersion_(std::move(deviceVersion)) {}

bool AboutDialog::onInit() {
    control<Static>(IDC_DEVICE_VERSION).setText(deviceVersion_);
    return true;
}

}  // namespace korvane
