#include "editors/component_list.h"

#include <algorithm>

#include "editors/channel_rows.h"
#include "editors/component_selection.h"

namespace korvane {

ComponentList::ComponentList(const Editing& editing, ChannelType type,
                             std::span<const InputChannelRecord> all,
                             std::function<Components()> candidates)
    : editing_(editing), type_(type), candidates_(std::move(candidates)) {
    std::ranges::copy_if(all, std::back_inserter(components_), [type](const auto& component) {
        return static_cast<ChannelType>(component.type) == type;
    });
}

std::vector<ListColumn> ComponentList::columns() const {
    return channelColumns(type_);
}

std::vector<ListRow> ComponentList::rows() const {
    return channelRows(components_, type_);
}

// The order is that in which they were chosen: always at the end.
bool ComponentList::add(int) {
    ComponentSelectionForm form(type_, offered());
    return editing_.forms.run(form) && append(form.chosen());
}

// What the list already holds is no choice.
Components ComponentList::offered() const {
    Components offered = candidates_();
    std::erase_if(offered, [this](const InputChannelRecord& candidate) {
        return std::ranges::any_of(components_, [&candidate](const auto& component) {
            return sameStream(component, candidate);
        });
    });
    return offered;
}

// The message names the device's places for a service; one of them is never this list's.
bool ComponentList::append(const Components& chosen) {
    if (components_.size() + chosen.size() >= limits::components) {
        editing_.prompts.warning(tooManyComponents);
        return false;
    }
    components_.insert(components_.end(), chosen.begin(), chosen.end());
    return !chosen.empty();
}

bool ComponentList::remove(int row) {
    components_.erase(components_.begin() + row);
    return true;
}

}  // namespace korvane
