#include "editors/frame_form.h"
#include "editors/frame_table.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

using Rows = std::vector<ListRow>;
using Place = ConfigModel::FramePlace;

constexpr TableKind continuous = TableKind::Continuous, shortTime = TableKind::ShortTime;

class Frames : public test::ListEditing {
  protected:
    // The dialog of a frame, while it shows.
    struct Shown {
        Shown(Frames& test, const Place& place, int before = -1)
            : form(test.editing_, place, before), page(form, controls, test.prompts_) {
            page.show();
        }
        FrameForm form;
        Controls controls;
        FormExchange page;
    };

    // Continuous frames 0, 1 and short-time frames 5, 6 with this many slots each, numbered in this
    // order, and with services; then what else is there.
    void fill(
        const std::array<std::size_t, 4>& counts,
        const std::function<void(ConfigTables&)>& more = [](ConfigTables&) {}) {
        using test::service;
        MultiplexFrame frames[] = {test::frame(0, {service(1, 100)}),
                                   test::frame(1, {service(1, 101), service(4, 104)}),
                                   test::frame(5, {service(1, 400)}), test::frame(6)};
        std::uint8_t next = 0, octet = 0;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            frames[i].rsRate = frames[i].modulation = 1;
            for (std::size_t n = 0; n < counts[i]; ++n) frames[i].timeSlots.append(next++);
            for (ServiceRecord& one : frames[i].services) {
                one.bandwidth = 1000;
                one.components.append(test::channel(ChannelType::Dra, octet++, 5000));
            }
        }
        test::editTables(*model_, [&](ConfigTables& tables) {
            for (const TableKind kind : {continuous, shortTime}) tables.table(kind).frames.clear();
            for (std::size_t i = 0; i < counts.size(); ++i)
                tables.table(TableKind(i / 2)).frames.append(frames[i]);
            more(tables);
        });
    }
    // The first and the last slot of each frame of a table: "0-2 3-3 ".
    std::string numbers(TableKind kind) const {
        std::string text;
        for (const MultiplexFrame& one : tables().table(kind).frames)
            text +=
                std::to_string(one.timeSlots[0]) + '-' + std::to_string(one.timeSlots.back()) + ' ';
        return text;
    }
    bool configure(FrameForm& form, const std::string& count) {
        return entering({{IDC_SLOT_NUMBER, count}}, form.timeSlots()).open(EditList::noRow);
    }
    // The list, of which the next frame gets these entries and so many slots.
    EditList& giving(const Entries& entries, const std::string& slots, EditList& list) {
        forms_.script = {[=, this](Controls& controls) {
                             put(entries, controls);
                             dynamic_cast<FrameForm&>(*forms_.current).timeSlots().add(0);
                         },
                         [=](Controls& controls) { controls.texts[IDC_SLOT_NUMBER] = slots; }};
        return list;
    }

    FrameList frames_{editing_, continuous}, shortFrames_{editing_, shortTime};
};

TEST_F(Frames, BeginWithTheUsualValuesAndTheNextId) {
    Shown first(*this, {continuous, -1});
    const std::map<int, int> usual{{IDC_RS_RATE, 1},
                                   {IDC_BYTE_INTERLEAVING, 1},
                                   {IDC_LDPC_RATE, 0},
                                   {IDC_MODULATION, 1},
                                   {IDC_SCRAMBLING, 0}};
    EXPECT_EQ(first.controls.selections, usual);
    EXPECT_EQ(first.controls.items[IDC_RS_RATE].back(), "(240, 176)");
    EXPECT_EQ(first.controls.items[IDC_SCRAMBLING].back(), "模式7");
    EXPECT_EQ(first.controls.texts[IDC_FRAME_ID], "1") << "not 0";
    for (const auto& [kind, id, next] : {std::tuple{continuous, 7, "8"}, {shortTime, 255, "0"}}) {
        model_->addFrame(kind, test::frame(static_cast<std::uint8_t>(id)));
        for (const TableKind one : {continuous, shortTime})
            EXPECT_EQ(Shown(*this, {one, -1}).controls.texts[IDC_FRAME_ID], next);
    }
}

// Each step puts right what the one before was refused for, or makes it wrong in another way.
TEST_F(Frames, AreRefusedInThisOrderWhereItIsWrong) {
    fill({3, 0, 1, 1}, [](ConfigTables& tables) {
        MultiplexFrame& frame = tables.continuous.frames[1];
        frame.id = 0;
        frame.services[0].bandwidth = 299'000;
        frame.rsRate = frame.byteInterleaving = frame.modulation = frame.ldpcRate = 4;
        frame.scrambling = 8;
        for (int i = 0; i < 39; ++i) tables.continuousServices.entries.append({7, 99, 0});
    });
    const std::tuple<int, const char*, int, const char*> steps[] = {
        {IDC_FRAME_ID, "x", IDC_FRAME_ID, "请输入一个整数。"},
        {IDC_FRAME_ID, "40", IDC_RS_RATE, "请选择RS码速率"},
        {IDC_RS_RATE, "1", IDC_BYTE_INTERLEAVING, "请选择字节交织模式"},
        {IDC_BYTE_INTERLEAVING, "0", IDC_MODULATION, "请选择调制方式"},
        {IDC_MODULATION, "1", IDC_LDPC_RATE, "请选择LDPC编码速率"},
        {IDC_LDPC_RATE, "0", IDC_SCRAMBLING, "请选择扰码方式"},
        {IDC_SCRAMBLING, "7", IDC_TIME_SLOTS, "时隙数不能为0"},
        {IDC_TIME_SLOTS, "2", IDC_FRAME_ID, "复用帧标识应在0~39之间"},
        {IDC_FRAME_ID, "261", IDC_FRAME_ID, "已有相同标识的复用帧"},  // of a short-time frame
        {IDC_FRAME_ID, "258", IDC_SUB_FRAMES,
         "总业务带宽(300000)超过信道带宽(258048 bps)，溢出带宽(41952 bps)"},
        {IDC_TIME_SLOTS, "3", IDC_SUB_FRAMES,
         "持续业务配置表最多支持40项，该复用帧的业务使其达到41项"},
        {IDC_SUB_FRAMES, "38", IDC_TIME_SLOTS, "已达最大时隙数，超出时隙数(1)"},
    };
    EXPECT_EQ(frames_.rows()[1], (ListRow{"0", "", "", "", "", ""}));
    Shown shown(*this, {continuous, 1});
    MultiplexFrame other = tables().continuous.frames[0];
    for (const auto& [entry, value, focus, message] : steps) {
        EXPECT_TRUE(entry != IDC_TIME_SLOTS || configure(shown.form, value));
        if (entry == IDC_SUB_FRAMES) {  // one less, and another frame takes so many slots
            EXPECT_TRUE(shown.form.subFrames().remove(1));
            other.timeSlots.resize(std::stoul(value));
            model_->updateFrame(continuous, 0, other);
        }
        put({{entry, value}}, shown.controls);
        EXPECT_FALSE(shown.page.accept()) << message;
        EXPECT_EQ(said(), std::string("warn ") + message + '\n');
        EXPECT_EQ(shown.controls.focused, focus) << message;
    }
    other.timeSlots.resize(37);
    model_->updateFrame(continuous, 0, other);
    EXPECT_TRUE(shown.page.accept()) << said();
    EXPECT_EQ(shown.form.frame().id, 2);
}

// An id that stays is no news, whatever it is.
TEST_F(Frames, KeepTheirIdAndWhatNobodySees) {
    fill({1, 1, 1, 1}, [](ConfigTables& tables) {
        for (MultiplexFrame& frame : tables.continuous.frames) frame.id = 77;
    });
    const auto before = copyOf(tables());
    EXPECT_TRUE(entering({}, frames_).edit(1));
    EXPECT_EQ(tables().continuous, before->continuous);
    expectRefused(entering({{IDC_FRAME_ID, "5"}}, shortFrames_).edit(1), IDC_FRAME_ID,
                  "已有相同标识的复用帧");
}

TEST_F(Frames, NumberTheirSlotsAndThoseOfTheFramesBehind) {
    fill({2, 3, 2, 1});
    EXPECT_TRUE(giving({{IDC_FRAME_ID, "9"}, {IDC_MODULATION, "2"}}, "4", frames_).add(1));
    EXPECT_EQ(numbers(continuous), "0-1 2-5 6-8 ");
    EXPECT_EQ(numbers(shortTime), "5-6 7-7 ") << "as they were";
    EXPECT_EQ(frames_.rows()[1], (ListRow{"9", "(240, 224)", "模式1", "1/2", "16QAM", "模式0"}));
    const std::tuple<bool, int, const char*, const char*> steps[] = {
        {false, 0, "2", "5-6 7-7 "},
        {false, 1, "2", "5-6 9-10 "},
        {false, 0, "3", "9-11 12-13 "},
        {true, 1, "1", "9-11 12-12 13-14 "},
        {true, -1, "2", "9-11 12-12 13-14 15-16 "}};
    for (const auto& [isNew, row, slots, after] : steps) {
        EditList& list = giving({}, slots, shortFrames_);
        EXPECT_TRUE(isNew ? list.add(row) : list.edit(row)) << said();
        EXPECT_EQ(numbers(shortTime), after);
    }
    EXPECT_TRUE(shortFrames_.remove(0));
    EXPECT_EQ(numbers(shortTime), "12-12 13-14 15-16 ") << "the others stay";
    EXPECT_EQ(tables().shortTime.frames[0].kind, shortTime);
}

// A table that has too many already can be shrunk step by step; a short-time frame that kept its
// numbers is no reason to take others twice.
TEST_F(Frames, TakeNoSlotAboveTheLast) {
    const std::array<std::size_t, 4> some{10, 10, 10, 5}, many{30, 20, 10, 3};
    const struct {
        std::array<std::size_t, 4> filled;
        Place place;
        const char *count, *excess;  // empty: it fits
        int before = -1;
    } cases[] = {
        {some, {continuous, 0}, "30", ""},   {some, {continuous, 0}, "31", "1"},
        {some, {continuous, -1}, "20", ""},  {some, {continuous, -1}, "255", "235"},
        {some, {shortTime, 0}, "15", ""},    {some, {shortTime, 0}, "16", "1"},
        {some, {shortTime, 1}, "10", ""},    {some, {shortTime, 1}, "11", "1"},
        {some, {shortTime, 1}, "26", "1"},   {some, {shortTime, -1}, "6", "1"},
        {some, {shortTime, -1}, "5", "", 0}, {some, {shortTime, -1}, "6", "1", 0},
        {some, {continuous, 1}, "0", ""},    {many, {continuous, 0}, "29", ""},
        {many, {continuous, 0}, "31", "11"}, {many, {shortTime, 0}, "10", ""},
        {many, {shortTime, 0}, "9", "22"},
    };
    for (const auto& [filled, place, count, excess, before] : cases) {
        fill(filled);
        Shown shown(*this, place, before);
        EXPECT_EQ(configure(shown.form, count), *excess == 0) << place.index << ' ' << count;
        EXPECT_EQ(said(),
                  *excess ? "warn 已达最大时隙数，超出时隙数(" + std::string(excess) + ")\n" : "");
        EXPECT_EQ(forms_.controls.focused, *excess ? IDC_SLOT_NUMBER : 0);
    }
}

TEST_F(Frames, AnswerForTheirWorkingCopy) {
    fill({1, 1, 1, 1});
    Shown frame(*this, {continuous, 1}), added(*this, {continuous, -1}),
        brief(*this, {shortTime, 1});
    const std::string same = "warn 已有相同标识的";
    const std::tuple<Shown*, std::uint32_t, int, std::string> ids[] = {
        {&frame, 104, -1, same + "业务\n"},
        {&frame, 100, -2, same + "业务\n"},
        {&added, 104, -2, same + "业务\n"},
        {&brief, 104, -2, same + "业务\n"},
        {&frame, 400, 0, ""},
        {&frame, 65535, 0, ""},
        {&frame, 65536, -2, "warn 业务标识必须在0~65535之间\n"}};
    for (const auto& [shown, id, answer, message] : ids) {
        EXPECT_EQ(shown->form.checkServiceId(id), answer);
        EXPECT_EQ(said(), message) << id;
    }
    EXPECT_EQ(frame.form.checkSubFrameId(4), -1);
    EXPECT_EQ(said(), same + "子帧\n");
    EXPECT_TRUE(frame.form.subFrames().remove(1));
    EXPECT_EQ(frame.form.checkServiceId(104) + frame.form.checkSubFrameId(4), 0) << "gone here";
}

TEST_F(Frames, TellWhatTheOtherSubFramesLeave) {
    fill({1, 1, 1, 1}, [](ConfigTables& tables) { tables.shortTime.frames[0].ldpcRate = 2; });
    Shown shown(*this, {continuous, 1}), unknown(*this, {shortTime, 0});
    FrameForm& form = shown.form;
    std::vector<InputChannelRecord> all;
    for (const std::uint8_t i : {3, 2, 1}) all.push_back(test::channel(ChannelType::Dra, i, 5000));
    all[2].position = 9;
    const auto left = [&](std::uint32_t id) {
        auto candidates = all;
        form.dropTaken(id, candidates);
        std::string text = std::to_string(form.availableBandwidth()) + ' ';
        for (const auto& one : candidates) text += std::to_string(one.address[3]);
        return text;
    };
    EXPECT_EQ(left(101) + ' ' + left(104) + ' ' + left(9), "127024 31 127024 32 127024 3");
    forms_.script = {[&](Controls&) { EXPECT_EQ(left(9), "128024 31") << "without its own"; }};
    form.subFrames().open(0);
    said();
    const std::tuple<Shown*, int, const char*, std::uint32_t, const char*> demands[] = {
        {&shown, 1, "1", 127'024, ""},
        {&shown, 1, "1", 127'025,
         "warn 业务带宽(127025 bps)超过信道带宽(129024 bps)，可用带宽(127024 bps)\n"},
        {&shown, 2, "1", 127'025, ""},
        {&shown, 2, "0", 0, "warn 时隙数为0，请先配置时隙\n"},
        {&unknown, 1, "1", 0, "warn 请选择LDPC编码速率\n"},
    };
    for (const auto& [one, modulation, slots, bandwidth, message] : demands) {
        EXPECT_TRUE(configure(one->form, slots));
        one->controls.selections[IDC_MODULATION] = modulation;
        EXPECT_EQ(one->form.checkBandwidth(bandwidth), *message ? 1 : 0) << message;
        EXPECT_EQ(said(), message);
    }
}

TEST_F(Frames, NothingOfACancelledDialogStays) {
    fill({1, 1, 1, 1});
    const auto before = copyOf(tables());
    for (FrameList* list : {&frames_, &shortFrames_})
        EXPECT_FALSE(giving({{IDC_RS_RATE, "3"}, {IDC_FRAME_ID, "x"}}, "9", *list).edit(1));
    EXPECT_EQ(forms_.shown, 4);
    EXPECT_FALSE(frames_.add(1));
    EXPECT_EQ(tables(), *before);
}

// Frame 0 takes services without components.
TEST_F(Frames, ListsHoldToTheirRules) {
    fill({1, 1, 1, 1});
    using Offer = EditList::Offer;
    const Offer all{true, true, true}, none{false, false, false}, adds{true, false, false};
    Shown zero(*this, {continuous, 0}), one(*this, {continuous, 1}), added(*this, {continuous, -1});
    EditList &ofZero = zero.form.subFrames(), &ofOne = one.form.subFrames();
    const std::tuple<EditList&, int, Offer> offers[] = {{frames_, 0, {false, true, false}},
                                                        {frames_, 1, all},
                                                        {shortFrames_, 0, all},
                                                        {frames_, -1, adds},
                                                        {ofOne, 0, all},
                                                        {added.form.subFrames(), -1, adds},
                                                        {ofZero, 0, none},
                                                        {ofZero, -1, none},
                                                        {one.form.timeSlots(), 0, adds}};
    for (const auto& [list, row, offer] : offers) EXPECT_EQ(list.offer(row), offer) << row;

    EXPECT_TRUE(entering({{IDC_SERVICE_ID, "300"}, {IDC_SERVICE_BANDWIDTH, "1"}}, ofZero).add(0));
    EXPECT_TRUE(entering({{IDC_SERVICE_ID, "301"}}, ofZero).open(0)) << said();
    put({{IDC_FRAME_ID, "x"}}, one.controls);
    EXPECT_FALSE(ofZero.open(EditList::noRow) || ofOne.add(0) || ofOne.edit(0));
    EXPECT_EQ(ofZero.rows(), (Rows{{"1", "301"}, {"2", "300"}}));
    prompts_.answers = {true};
    EXPECT_TRUE(ListEditor(ofOne, prompts_).remove({0, 1}));
    EXPECT_EQ(ofOne.rows(), Rows());

    MultiplexFrame full = tables().continuous.frames[1];
    while (full.services.append({})) {
    }
    while (model_->addFrame(shortTime, full) == 0) {
    }
    said();
    EXPECT_FALSE(Shown(*this, {shortTime, 9}).form.subFrames().add(0) || shortFrames_.add(0));
    EXPECT_EQ(said(), "warn 已达最大子帧数(8)\nwarn 最多支持40个复用帧\n");
    EXPECT_EQ(forms_.shown, 2);
}

}  // namespace
}  // namespace korvane
