#include "editors/frame_table.h"

#include "editors/frame_form.h"
#include "model/frame_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::uint8_t continuousTableId = 2, shortTimeTableId = 4;

ListRow rowOf(const MultiplexFrame& frame) {
    ListRow row{std::to_string(frame.id)};
    for (const std::string_view text :
         {rsCodeRateTable(frame.rsRate), byteInterleaveTable(frame.byteInterleaving),
          ldpcRateTable(frame.ldpcRate), modulationTable(frame.modulation),
          scramblingModeTable(frame.scrambling)})
        row.emplace_back(text);
    return row;
}

}  // namespace

int FrameListForm::dialog() const {
    return IDD_FRAME_LIST_PAGE;
}

void FrameListForm::load() {
    tableId_ = kind_ == TableKind::ShortTime ? shortTimeTableId : continuousTableId;
    channelNumber_ = model_.tables().table(kind_).header[1];
}

void FrameListForm::describe(Fields& fields) {
    fields.number(IDC_TABLE_ID, tableId_);
    fields.number(IDC_TABLE_CHANNEL_NUMBER, channelNumber_);
}

std::vector<ListColumn> FrameList::columns() const {
    return {{"复用帧标识", 80},    {"RS码速率", 80}, {"字节交织模式", 100},
            {"LDPC编码速率", 100}, {"调制方式", 80}, {"扰码方式", 80}};
}

std::vector<ListRow> FrameList::rows() const {
    std::vector<ListRow> rows;
    for (const MultiplexFrame& frame : frames()) rows.push_back(rowOf(frame));
    return rows;
}

EditList::Offer FrameList::offer(int row) const {
    const bool isFirst = kind_ == TableKind::Continuous && row == 0;
    return isFirst ? Offer{false, true, false} : EditList::offer(row);
}

bool FrameList::add(int before) {
    if (!hasRoom(frames(), "复用帧", editing_.prompts)) return false;
    const std::size_t row = before == noRow ? frames().size() : static_cast<std::size_t>(before);
    FrameForm form(editing_, {kind_, -1}, before);
    if (!editing_.forms.run(form)) return false;
    if (!taken(editing_.model.addFrame(kind_, form.frame(), before), editing_.prompts))
        return false;
    if (kind_ == TableKind::ShortTime) renumberShortTime(editing_.model, row);
    return true;
}

bool FrameList::edit(int row) {
    FrameForm form(editing_, {kind_, row});
    if (!editing_.forms.run(form)) return false;
    const bool renumber = kind_ == TableKind::ShortTime && form.resized();
    if (!taken(editing_.model.updateFrame(kind_, row, form.frame()), editing_.prompts))
        return false;
    if (renumber) renumberShortTime(editing_.model, static_cast<std::size_t>(row));
    return true;
}

bool FrameList::remove(int row) {
    return taken(editing_.model.removeFrame(kind_, row), editing_.prompts);
}

}  // namespace korvane
