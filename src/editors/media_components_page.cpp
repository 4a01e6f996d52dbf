#include "editors/media_components_page.h"

#include "resources/ids.h"

namespace korvane {

MediaComponentsPage::MediaComponentsPage(SubFrameForm& form, Prompts& prompts)
    : Dialog(IDD_MEDIA_COMPONENTS) {
    lists_.add(form.video(), prompts, IDC_VIDEO_COMPONENTS, firstListMenu);
    lists_.add(form.audio(), prompts, IDC_AUDIO_COMPONENTS, secondListMenu);
    lists_.add(form.ecm(), prompts, IDC_ECM_COMPONENTS, thirdListMenu);
}

bool MediaComponentsPage::onInit() {
    lists_.create(hwnd());
    lists_.refill();
    return false;
}

}  // namespace korvane
