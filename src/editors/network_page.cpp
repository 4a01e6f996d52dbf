#include "editors/network_page.h"

#include <algorithm>

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {

NetworkPage::NetworkPage(const Editing& editing, RevealingPrompts::Reveal reveal)
    : NetworkPageParts{{editing.prompts, std::move(reveal)},
                       {editing.model, NetworkPageParts::prompts},
                       FrequencyPointList(editing),
                       NeighbourNetworkList(editing)},
      FormPage(form, NetworkPageParts::prompts) {
    addList(points, editing.prompts, IDC_FREQUENCY_POINTS, firstListMenu);
    addList(neighbours, editing.prompts, IDC_NEIGHBOURS, secondListMenu);
}

// Both lists are as wide as the page and share its height; the title between them moves along.
void NetworkPage::onSize(int width, int height) {
    const auto upper = control<Control>(IDC_FREQUENCY_POINTS),
               lower = control<Control>(IDC_NEIGHBOURS),
               title = control<Control>(IDC_NEIGHBOURS_TITLE);
    RECT upperArea = upper.area(), lowerArea = lower.area(), titleArea = title.area();
    const LONG between = lowerArea.top - upperArea.bottom;
    const LONG listHeight = std::max((height - upperArea.top - between) / 2, 0L);
    const LONG down = upperArea.top + listHeight - upperArea.bottom;
    upperArea.bottom += down;
    OffsetRect(&titleArea, 0, down);
    lowerArea.top += down;
    lowerArea.bottom = lowerArea.top + listHeight;
    upperArea.right = lowerArea.right = width;
    upper.place(upperArea);
    title.place(titleArea);
    lower.place(lowerArea);
}

}  // namespace korvane
