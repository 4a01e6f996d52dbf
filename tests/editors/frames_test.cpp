#include "editors/frame_form.h"
#include "editors/frame_table.h"
#include "model/frame_text.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/list_editing.h"

namespace korvane {
namespace {

using Rows = std::vector<ListRow>;
using Place = ConfigModel::FramePlace;

constexpr TableKind continuous = TableKind::Continuous, shortTime = TableKind::ShortTime;
constexpr std::int64_t slotBits = 2 * 224 * 36 * 8;  // of a new frame, each slot

ServiceRecord service(std::uint8_t subFrame, std::uint16_t id, std::uint32_t bandwidth) {
    ServiceRecord record = test::service(subFrame, id);
    record.bandwidth = bandwidth;
    return record;
}

class Frames : public test::ListEditing {
  protected:
    // The dialog of a frame, while it shows.
    struct Shown {
        Shown(Frames& test, const Place& place, int before = -1)
            : form(test.editing_, place, before), page(form, controls, test.prompts_) {
            page.show();
        }
        Rows slots() { return form.timeSlots().rows(); }

        FrameForm form;
        Controls controls;
        FormExchange page;
    };

    // Continuous frames 0, 1 and short-time frames 5, 6 with this many slots each, numbered in this
    // order, and a service in frame 0 and in frame 1.
    void fill(const std::array<std::size_t, 4>& counts) {
        test::editTables(*model_, [&](ConfigTables& tables) {
            tables.continuous.frames.append(test::frame(0, {service(1, 100, 1000)}));
            tables.continuous.frames.append(test::frame(1, {service(1, 101, 2000)}));
            for (const std::uint8_t id : {5, 6}) tables.shortTime.frames.append(test::frame(id));
            std::uint8_t next = 0;
            for (std::size_t i = 0; i < counts.size(); ++i) {
                MultiplexFrame& one = tables.table(TableKind(i / 2)).frames[i % 2];
                one.rsRate = one.modulation = 1;
                for (std::size_t n = 0; n < counts[i]; ++n) one.timeSlots.append(next++);
            }
        });
    }
    // The first and the last slot of each frame of a table: "0-2 3-3 ".
    std::string numbers(TableKind kind) const {
        std::string text;
        for (const MultiplexFrame& one : tables().table(kind).frames)
            text += std::to_string(*one.timeSlots.begin()) + '-' +
                    std::to_string(one.timeSlots.back()) + ' ';
        return text;
    }
    bool configure(FrameForm& form, const std::string& count) {
        return entering({{IDC_SLOT_NUMBER, count}}, form.timeSlots()).open(EditList::noRow);
    }
    // The list, of which the next frame gets these entries and so many slots.
    EditList& giving(const Entries& entries, const std::string& slots, EditList& list) {
        forms_.script = {[=, this](Controls& controls) {
                             put(entries, controls);
                             shownFrame().timeSlots().add(0);
                         },
                         [=](Controls& controls) { controls.texts[IDC_SLOT_NUMBER] = slots; }};
        return list;
    }
    FrameForm& shownFrame() { return dynamic_cast<FrameForm&>(*forms_.current); }

    FrameList frames_{editing_, continuous}, shortFrames_{editing_, shortTime};
};

TEST_F(Frames, BeginWithTheUsualValuesAndTheNextId) {
    const std::tuple<int, int, std::span<const std::string_view>> choices[] = {
        {IDC_RS_RATE, 1, rsCodeRateNames},        {IDC_BYTE_INTERLEAVING, 1, byteInterleaveNames},
        {IDC_MODULATION, 1, modulationNames},     {IDC_LDPC_RATE, 0, ldpcRateNames},
        {IDC_SCRAMBLING, 0, scramblingModeNames},
    };
    Shown first(*this, {continuous, -1});
    for (const auto& [control, index, names] : choices) {
        EXPECT_EQ(first.controls.selections[control], index) << control;
        EXPECT_TRUE(std::ranges::equal(first.controls.items[control], names)) << control;
    }
    EXPECT_EQ(first.controls.texts[IDC_TIME_SLOT_COUNT], "共0个");
    EXPECT_EQ(first.controls.texts[IDC_FRAME_ID], "1") << "not 0";
    for (const auto& [kind, id, next] : {std::tuple{continuous, 7, "8"}, {shortTime, 255, "0"}}) {
        model_->addFrame(kind, test::frame(static_cast<std::uint8_t>(id)));
        for (const TableKind one : {continuous, shortTime})
            EXPECT_EQ(Shown(*this, {one, -1}).controls.texts[IDC_FRAME_ID], next);
    }
}

// Each step puts right what the one before was refused for, or makes it wrong in another way.
TEST_F(Frames, AreRefusedInThisOrderWhereItIsWrong) {
    fill({0, 3, 1, 1});
    test::editTables(*model_, [](ConfigTables& tables) {
        MultiplexFrame& frame = tables.continuous.frames[0];
        frame.services.append(service(2, 102, 299'000));
        frame.rsRate = frame.byteInterleaving = frame.modulation = frame.ldpcRate = 4;
        frame.scrambling = 8;
        while (!tables.continuousServices.entries.full())
            tables.continuousServices.entries.append({7, 99, 0});
    });
    const struct {
        int entry;
        const char* value;  // of slots the number, of sub-frames the row that goes
        int focus;
        const char* message;
    } steps[] = {
        {IDC_FRAME_ID, "x", IDC_FRAME_ID, "请输入一个整数。"},
        {IDC_FRAME_ID, "40", IDC_RS_RATE, "请选择RS码速率"},
        {IDC_RS_RATE, "1", IDC_BYTE_INTERLEAVING, "请选择字节交织模式"},
        {IDC_BYTE_INTERLEAVING, "0", IDC_MODULATION, "请选择调制方式"},
        {IDC_MODULATION, "1", IDC_LDPC_RATE, "请选择LDPC编码速率"},
        {IDC_LDPC_RATE, "0", IDC_SCRAMBLING, "请选择扰码方式"},
        {IDC_SCRAMBLING, "7", IDC_TIME_SLOTS, "时隙数不能为0"},
        {IDC_TIME_SLOTS, "2", IDC_FRAME_ID, "复用帧标识应在0~39之间"},
        {IDC_FRAME_ID, "1", IDC_FRAME_ID, "已有相同标识的复用帧"},
        {IDC_FRAME_ID, "261", IDC_FRAME_ID, "已有相同标识的复用帧"},
        {IDC_FRAME_ID, "258", IDC_SUB_FRAMES,
         "总业务带宽(300000)超过信道带宽(258048 bps)，溢出带宽(41952 bps)"},
        {IDC_TIME_SLOTS, "3", IDC_SUB_FRAMES,
         "持续业务配置表最多支持40项，该复用帧的业务使其达到43项"},
    };
    Shown shown(*this, {continuous, 0});
    for (const auto& [entry, value, focus, message] : steps) {
        if (entry == IDC_TIME_SLOTS)
            EXPECT_TRUE(configure(shown.form, value));
        else
            put({{entry, value}}, shown.controls);
        EXPECT_FALSE(shown.page.accept()) << message;
        EXPECT_EQ(said(), std::string("warn ") + message + '\n');
        EXPECT_EQ(shown.controls.focused, focus) << message;
    }
    for (int i = 0; i < 3; ++i) model_->removeServiceFrequency(continuous, 39 - i);
    MultiplexFrame other = tables().continuous.frames[1];
    other.timeSlots.resize(38);
    model_->updateFrame(continuous, 1, other);
    EXPECT_FALSE(shown.page.accept());
    EXPECT_EQ(said(), "warn 已达最大时隙数，超出时隙数(1)\n");
    other.timeSlots.resize(37);
    model_->updateFrame(continuous, 1, other);
    EXPECT_TRUE(shown.page.accept()) << said();
    EXPECT_EQ(shown.form.frame().id, 2);
}

// An id that stays is no news, whatever it is.
TEST_F(Frames, KeepTheirIdAndWhatNobodySees) {
    fill({1, 1, 1, 1});
    test::editTables(*model_, [](ConfigTables& tables) {
        for (const int i : {0, 1}) {
            tables.continuous.frames[i].id = 77;
            tables.continuous.frames[i].services[0].carried = {1, 2, 3, 4};
        }
    });
    const MultiplexFrame before = tables().continuous.frames[1];
    EXPECT_TRUE(entering({}, frames_).edit(1));
    EXPECT_EQ(tables().continuous.frames[1], before);
    expectRefused(entering({{IDC_FRAME_ID, "5"}}, frames_).edit(1), IDC_FRAME_ID,
                  "已有相同标识的复用帧");
}

TEST_F(Frames, NumberTheirSlotsAndThoseOfTheFramesBehind) {
    fill({2, 3, 2, 1});
    EXPECT_TRUE(giving({{IDC_FRAME_ID, "9"}, {IDC_MODULATION, "2"}}, "4", frames_).add(1));
    EXPECT_EQ(numbers(continuous), "0-1 2-5 6-8 ");
    EXPECT_EQ(numbers(shortTime), "5-6 7-7 ") << "as they were";
    EXPECT_EQ(frames_.rows()[1], (ListRow{"9", "(240, 224)", "模式1", "1/2", "16QAM", "模式0"}));
    const struct {
        bool isNew;
        int row;
        const char *slots, *after;
    } steps[] = {{false, 0, "2", "5-6 7-7 "},
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

TEST_F(Frames, TakeNoSlotAboveTheLast) {
    fill({10, 10, 10, 5});
    const struct {
        Place place;
        const char *count, *excess;  // empty: it fits
        int before = -1;
    } cases[] = {
        {{continuous, 0}, "30", ""},   {{continuous, 0}, "31", "1"},
        {{continuous, -1}, "20", ""},  {{continuous, -1}, "255", "235"},
        {{shortTime, 0}, "15", ""},    {{shortTime, 0}, "16", "1"},
        {{shortTime, 1}, "10", ""},    {{shortTime, 1}, "11", "1"},
        {{shortTime, 1}, "26", "1"},   {{shortTime, -1}, "6", "1"},
        {{shortTime, -1}, "5", "", 0}, {{shortTime, -1}, "6", "1", 0},
        {{continuous, 1}, "0", ""},
    };
    for (const auto& [place, count, excess, before] : cases) {
        Shown shown(*this, place, before);
        const bool fits = *excess == 0;
        EXPECT_EQ(configure(shown.form, count), fits) << place.index << ' ' << count;
        EXPECT_EQ(said(),
                  fits ? "" : "warn 已达最大时隙数，超出时隙数(" + std::string(excess) + ")\n");
        if (fits)
            EXPECT_EQ(shown.slots().size(), std::stoul(count));
        else
            EXPECT_EQ(forms_.controls.focused, IDC_SLOT_NUMBER);
    }
}

// A table that has too many already can be shrunk step by step; a short-time frame that kept its
// numbers is no reason to take them twice.
TEST_F(Frames, MakeRoomInTablesThatCameWithTooLittle) {
    fill({30, 20, 10, 3});
    Shown lower(*this, {continuous, 0});
    EXPECT_TRUE(configure(lower.form, "29"));
    EXPECT_FALSE(configure(lower.form, "31"));
    Shown kept(*this, {shortTime, 0});
    EXPECT_TRUE(configure(kept.form, "10"));
    EXPECT_EQ(kept.slots().front(), ListRow{"50"});
    EXPECT_FALSE(configure(kept.form, "9"));
    EXPECT_EQ(said(), "warn 已达最大时隙数，超出时隙数(11)\nwarn 已达最大时隙数，超出时隙数(22)\n");
}

TEST_F(Frames, SayWhatIsTakenWhileItIsEntered) {
    fill({1, 1, 1, 1});
    Shown shown(*this, {continuous, 1});
    const auto expectLoad = [&](const std::string& text, int level) {
        shown.page.entered(IDC_MODULATION);
        EXPECT_EQ(shown.controls.texts[IDC_CAPACITY_TEXT], text);
        EXPECT_EQ(shown.controls.levels[IDC_CAPACITY_BAR], level);
    };
    expectLoad("信道带宽 129024 bps，已用 2000 bps，剩余 127024 bps", 1);
    EXPECT_TRUE(configure(shown.form, "2"));
    shown.controls.selections[IDC_MODULATION] = 2;
    expectLoad("信道带宽 516096 bps，已用 2000 bps，剩余 514096 bps", 0);
    EXPECT_EQ(shown.controls.texts[IDC_TIME_SLOT_COUNT], "共2个");
    EXPECT_EQ(shown.controls.texts[IDC_SUB_FRAME_COUNT], "共1个");
    shown.controls.texts[IDC_FRAME_ID] = "x";
    EXPECT_TRUE(configure(shown.form, "0"));
    expectLoad("信道带宽 0 bps，已用 2000 bps，超出 2000 bps", 101);
}

class FrameAnswers : public Frames {
  protected:
    bool fillServices() {
        fill({1, 1, 1, 1});
        test::editTables(*model_, [](ConfigTables& tables) {
            auto& services = tables.continuous.frames[1].services;
            services.append(service(4, 104, 29'024));
            services[0].components.append(test::channel(ChannelType::Dra, 1, 5000));
            services[1].components.append(test::channel(ChannelType::Dra, 2, 5000));
            tables.shortTime.frames[0].services.append(service(1, 400, 0));
        });
        return true;
    }

    const bool filled_ = fillServices();
    Shown shown_{*this, {continuous, 1}};
    FrameForm& form_ = shown_.form;
};

TEST_F(FrameAnswers, GoByTheWorkingCopy) {
    const char *const sameService = "warn 已有相同标识的业务\n", *const sameSubFrame =
                                                                     "warn 已有相同标识的子帧\n";
    const struct {
        bool subFrame;
        std::uint32_t id;
        int answer;
        const char* message;
    } cases[] = {
        {true, 4, -1, sameSubFrame},
        {true, 2, 0, ""},
        {false, 104, -1, sameService},
        {false, 100, -2, sameService},
        {false, 400, 0, ""},
        {false, 65535, 0, ""},
        {false, 65536, -2, "warn 业务标识必须在0~65535之间\n"},
    };
    for (const auto& [subFrame, id, answer, message] : cases) {
        EXPECT_EQ(subFrame ? form_.checkSubFrameId(static_cast<std::uint8_t>(id))
                           : form_.checkServiceId(id),
                  answer);
        EXPECT_EQ(said(), message) << id;
    }
    EXPECT_TRUE(form_.subFrames().remove(1));
    EXPECT_EQ(form_.checkServiceId(104), 0) << "in the model, the frame has it still";
    EXPECT_EQ(form_.checkSubFrameId(4), 0);
    for (const Place& place : {Place{continuous, -1}, Place{shortTime, 1}})
        EXPECT_EQ(Shown(*this, place).form.checkServiceId(101), -2) << "no frame is skipped";
}

TEST_F(FrameAnswers, TellWhatTheOtherSubFramesLeave) {
    EXPECT_EQ(form_.checkBandwidth(slotBits - 31'024), 0);
    EXPECT_EQ(form_.checkBandwidth(slotBits - 31'023), 1);
    EXPECT_EQ(said(), "warn 业务带宽(98001 bps)超过信道带宽(129024 bps)，可用带宽(98000 bps)\n");
    const auto available = [this] {
        std::int32_t bits = 0;
        forms_.script = {[&](Controls&) { bits = form_.availableBandwidth(); }};
        form_.subFrames().open(1);
        said();
        return bits;
    };
    EXPECT_EQ(available(), slotBits - 2000) << "without its own";
    shown_.controls.selections[IDC_MODULATION] = 2;
    EXPECT_EQ(form_.checkBandwidth(slotBits), 0) << "as it is entered now";
    EXPECT_TRUE(configure(form_, "0"));
    EXPECT_EQ(form_.checkBandwidth(0), 1);
    EXPECT_EQ(said(), "warn 时隙数为0，请先配置时隙\n");
    test::editTables(*model_,
                     [](ConfigTables& tables) { tables.continuous.frames[0].ldpcRate = 2; });
    Shown unknown(*this, {continuous, 0});
    EXPECT_EQ(unknown.form.checkBandwidth(1), 1);
    EXPECT_EQ(said(), "warn 请选择LDPC编码速率\n") << "before its capacity counts as none";
}

TEST_F(FrameAnswers, DropWhatOtherServicesHave) {
    std::vector<InputChannelRecord> all;
    for (const std::uint8_t i : {3, 2, 1}) all.push_back(test::channel(ChannelType::Dra, i, 5000));
    all[2].position = 9;
    const auto left = [&](std::uint32_t id) {
        std::string octets;
        auto candidates = all;
        form_.dropTaken(id, candidates);
        for (const auto& one : candidates) octets += std::to_string(one.address[3]);
        return octets;
    };
    EXPECT_EQ(left(101) + ' ' + left(104) + ' ' + left(9), "31 32 3");
    std::string own;
    forms_.script = {[&](Controls&) { own = left(9); }};
    form_.subFrames().edit(0);
    EXPECT_EQ(own, "31") << "a new id makes its own no other's";
}

// The lists of tables and frames hold to their rules, and what a cancelled dialog did is dropped.
TEST_F(FrameAnswers, NothingOfACancelledDialogStays) {
    const auto before = copyOf(tables());
    forms_.script = {[this](Controls& controls) {
                         FrameForm& form = shownFrame();
                         EXPECT_TRUE(form.subFrames().remove(0));
                         EXPECT_TRUE(form.timeSlots().add(-1));
                         put({{IDC_RS_RATE, "3"}, {IDC_FRAME_ID, "none"}}, controls);
                         EXPECT_FALSE(form.subFrames().add(-1) || form.subFrames().edit(0));
                     },
                     [](Controls& controls) { controls.texts[IDC_SLOT_NUMBER] = "9"; }};
    EXPECT_FALSE(frames_.edit(1));
    EXPECT_EQ(forms_.shown, 2) << "no sub-frame's while an entry is none";
    EXPECT_FALSE(frames_.add(1));
    EXPECT_EQ(tables(), *before);
}

TEST_F(FrameAnswers, ListsHoldToTheirRules) {
    using Offer = EditList::Offer;
    const Offer all{true, true, true}, none{false, false, false}, adds{true, false, false};
    EXPECT_EQ(frames_.offer(0), (Offer{false, true, false}));
    for (const Offer& offer : {frames_.offer(1), shortFrames_.offer(0), form_.subFrames().offer(0)})
        EXPECT_EQ(offer, all);
    EXPECT_EQ(frames_.offer(-1), adds);
    EXPECT_EQ(form_.timeSlots().offer(0), adds);
    Shown control(*this, {continuous, 0}), added(*this, {continuous, -1});
    EXPECT_EQ(control.form.subFrames().offer(0), none);
    EXPECT_EQ(added.form.subFrames().offer(-1), adds);
    const int shown = forms_.shown;
    EXPECT_FALSE(control.form.subFrames().open(0) || control.form.subFrames().open(-1));
    EXPECT_EQ(forms_.shown, shown + 1);

    ListEditor rows(form_.subFrames(), prompts_);
    prompts_.answers = {true};
    EXPECT_TRUE(rows.remove({0, 1}));
    EXPECT_EQ(form_.subFrames().rows(), Rows());
    ServiceRecord own = service(7, 107, 0);
    MultiplexFrame full = tables().continuous.frames[1];
    while (full.services.append(own)) ++own.serviceId;
    model_->updateFrame(continuous, 1, full);
    said();
    EXPECT_FALSE(Shown(*this, {continuous, 1}).form.subFrames().add(0));
    EXPECT_EQ(said(), "warn 已达最大子帧数(8)\n");
    while (model_->addFrame(shortTime, full) == 0) {
    }
    EXPECT_FALSE(shortFrames_.add(0));
    EXPECT_EQ(said(), "warn 最多支持40个复用帧\n");
    EXPECT_EQ(forms_.shown, shown + 1);
}

TEST_F(FrameAnswers, ThePageShowsItsTableAndWhatItCanName) {
    test::editTables(*model_, [](ConfigTables& tables) {
        tables.shortTime.header = {9, 33, 1};
        MultiplexFrame& frame = tables.shortTime.frames[1];
        frame.rsRate = frame.byteInterleaving = frame.modulation = 4;
        frame.ldpcRate = 2;
        frame.scrambling = 8;
    });
    FrameListForm form(*model_, shortTime);
    FormExchange page(form, forms_.controls, prompts_);
    page.show();
    EXPECT_EQ(forms_.controls.texts[IDC_TABLE_ID], "4");
    EXPECT_EQ(forms_.controls.texts[IDC_TABLE_CHANNEL_NUMBER], "33");
    EXPECT_TRUE(page.accept());
    EXPECT_EQ(tables().shortTime.header, (std::array<std::uint8_t, 3>{9, 33, 1}));
    EXPECT_EQ(shortFrames_.rows(), (Rows{{"5", "(240, 224)", "保留", "1/2", "QPSK", "模式0"},
                                         {"6", "", "", "", "", ""}}));
}

}  // namespace
}  // namespace korvane
