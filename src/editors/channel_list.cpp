#include "editors/channel_list.h"

#include "editors/channel_form.h"
#include "model/channel_text.h"
#include "model/edit_result.h"

namespace korvane {
namespace {

bool hasSampleRate(ChannelType type) {
    return type == ChannelType::Audio || type == ChannelType::Dra;
}

bool hasCoding(ChannelType type) {
    return type == ChannelType::Video || hasSampleRate(type);
}

}  // namespace

std::vector<ListColumn> ChannelList::columns() const {
    std::vector<ListColumn> columns = {{"序号", 45}, {"输入方式", 80}, {"接收地址", 120}};
    if (hasCoding(type_)) columns.push_back({"编码类型", 80});
    if (hasSampleRate(type_)) columns.push_back({"采样率", 80});
    return columns;
}

std::vector<ListRow> ChannelList::rows() const {
    std::vector<ListRow> rows;
    for (const InputChannelRecord& channel : channels()) {
        ListRow row = {std::to_string(rows.size()), std::string(inputMode(channel)),
                       receiveAddress(channel)};
        if (hasCoding(type_)) row.push_back(codingName(channel));
        if (hasSampleRate(type_)) row.push_back(sampleRateName(channel));
        rows.push_back(std::move(row));
    }
    return rows;
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
