#include "editors/channel_rows.h"

#include "model/channel_text.h"

namespace korvane {
namespace {

bool hasSampleRate(ChannelType type) {
    return type == ChannelType::Audio || type == ChannelType::Dra;
}

bool hasCoding(ChannelType type) {
    return type == ChannelType::Video || hasSampleRate(type);
}

}  // namespace

std::vector<ListColumn> channelColumns(ChannelType type) {
    std::vector<ListColumn> columns = {{"序号", 45}, {"输入方式", 80}, {"接收地址", 120}};
    if (hasCoding(type)) columns.push_back({"编码类型", 80});
    if (hasSampleRate(type)) columns.push_back({"采样率", 80});
    return columns;
}

std::vector<ListRow> channelRows(std::span<const InputChannelRecord> channels, ChannelType type) {
    std::vector<ListRow> rows;
    for (const InputChannelRecord& channel : channels) {
        ListRow row = {std::to_string(rows.size()), std::string(inputMode(channel)),
                       receiveAddress(channel)};
        if (hasCoding(type)) row.push_back(codingName(channel));
        if (hasSampleRate(type)) row.push_back(sampleRateName(channel));
        rows.push_back(std::move(row));
    }
    return rows;
}

}  // namespace korvane
