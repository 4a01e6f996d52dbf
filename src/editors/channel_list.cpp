#include "editors/channel_list.h"

#include "editors/channel_form.h"
#include "editors/channel_rows.h"
#include "model/edit_result.h"

namespace korvane {

std::vector<ListColumn> ChannelList::columns() const {
    return channelColumns(type_);
}

std::vector<ListRow> ChannelList::rows() const {
    return channelRows({channels().begin(), channels().size()}, type_);
}

// The limit is that of all types together, and the store's to know.
bool ChannelList::add(int before) {
    const auto form = newChannelForm(checks(), type_);
    if (!editing_.forms.run(*form)) return false;
    const std::uint32_t position =
        before == noRow ? ConfigModel::atEnd : static_cast<std::uint32_t>(before);
    const int result = editing_.model.addChannel(form->record(), position);
    if (result != edit_result::refused) return taken(result, editing_.prompts);
    editing_.prompts.warning("超过支持的最大输入通道数");
    return false;
}

bool ChannelList::edit(int row) {
    const auto index = static_cast<std::size_t>(row);
    const auto form = editedChannelForm(checks(), channels()[index]);
    return editing_.forms.run(*form) &&
           taken(editing_.model.updateChannel(index, form->record()), editing_.prompts);
}

bool ChannelList::remove(int row) {
    return taken(editing_.model.removeChannel(typeIndex(), static_cast<std::size_t>(row)),
                 editing_.prompts);
}

}  // namespace korvane
