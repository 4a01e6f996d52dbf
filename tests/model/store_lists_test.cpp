#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

#include "model/config_model.h"
#include "model/object_bytes.h"
#include "support/configurations.h"

// Each list of the store against a plain one: whatever is added, changed and removed, in whatever
// order, the elements are the same and stand in the same places.

namespace korvane {
namespace {

// A list as an editor works on it, its elements told apart by a number, the mark. Position -1
// appends.
struct ListCase {
    const char* name;
    std::size_t limit;
    bool insertable;
    std::function<int(ConfigModel&, int mark, int position)> add;
    std::function<int(ConfigModel&, int index, int mark)> set;
    std::function<int(ConfigModel&, int index)> remove;
    std::function<int(const ConfigModel&, int index)> mark;  // -1: refused
};

template <class Record, class Get, class Add, class Set, class Remove>
ListCase listOf(const char* name, std::size_t limit, bool insertable, Record (*make)(int),
                auto member, Get get, Add add, Set set, Remove remove) {
    return {name,
            limit,
            insertable,
            [=](ConfigModel& model, int mark, int at) { return add(model, make(mark), at); },
            [=](ConfigModel& model, int i, int mark) { return set(model, i, make(mark)); },
            remove,
            [=](const ConfigModel& model, int i) {
                Record record{};
                return get(model, i, record) == 0 ? static_cast<int>(record.*member) : -1;
            }};
}

constexpr auto continuous = TableKind::Continuous, shortTime = TableKind::ShortTime;

std::uint8_t byte(int mark) {
    return static_cast<std::uint8_t>(mark);
}

ListCase pairs(const char* name, TableKind kind) {
    return listOf<ServiceFrequencyEntry>(
        name, 40, true,
        [](int mark) {
            return ServiceFrequencyEntry{byte(mark), 30, 0};
        },
        &ServiceFrequencyEntry::serviceId,
        [=](auto& m, int i, auto& r) { return m.getServiceFrequency(kind, i, r); },
        [=](auto& m, auto r, int at) { return m.addServiceFrequency(kind, r, at); },
        [=](auto& m, int i, auto r) { return m.setServiceFrequency(kind, i, r); },
        [=](auto& m, int i) { return m.removeServiceFrequency(kind, i); });
}
// As many as there may be take all slots and all announcements.
MultiplexFrame smallFrame(int mark) {
    MultiplexFrame frame = test::frame(byte(mark), {test::service(1, byte(mark))});
    frame.timeSlots.resize(1);
    return frame;
}
ListCase frames(const char* name, TableKind kind) {
    return listOf<MultiplexFrame>(
        name, 40, true, &smallFrame, &MultiplexFrame::id,
        [=](auto& m, int i, auto& r) { return m.getFrame(kind, i, r); },
        [=](auto& m, const auto& r, int at) { return m.addFrame(kind, r, at); },
        [=](auto& m, int i, const auto& r) { return m.updateFrame(kind, i, r); },
        [=](auto& m, int i) { return m.removeFrame(kind, i); });
}
// In the second of two frames, the first of which must not notice.
ListCase services(const char* name, TableKind kind) {
    return listOf<ServiceRecord>(
        name, 8, false, [](int mark) { return test::service(1, byte(mark)); },
        &ServiceRecord::serviceId,
        [=](auto& m, int i, auto& r) {
            MultiplexFrame frame;
            if (m.getFrame(kind, 1, frame) != 0 || i < 0 || i >= int(frame.services.size()))
                return -1;
            r = frame.services[static_cast<std::size_t>(i)];
            return 0;
        },
        [=](auto& m, const auto& r, int) {
            while (m.tables().table(kind).frames.size() < 2) m.addFrame(kind, {});
            return m.addService(kind, 1, r);
        },
        [=](auto& m, int i, const auto& r) { return m.updateService(kind, 1, i, r); },
        [=](auto& m, int i) { return m.removeService(kind, 1, i); });
}

class Lists : public testing::TestWithParam<ListCase> {
  protected:
    int draw(std::size_t below) { return static_cast<int>(random_() % below); }

    void add(int mark, int at) {
        const bool appends = at == -1 || !GetParam().insertable;
        const bool fits = expected_.size() < GetParam().limit;
        ASSERT_EQ(GetParam().add(*model_, mark, at), fits ? 0 : -1);
        if (fits) expected_.insert(appends ? expected_.end() : expected_.begin() + at, mark);
    }
    // Both answer whether `index` names an element.
    void set(int index, int mark) {
        ASSERT_EQ(GetParam().set(*model_, index, mark), names(index) ? 0 : -1);
        if (names(index)) expected_[static_cast<std::size_t>(index)] = mark;
    }
    void remove(int index) {
        ASSERT_EQ(GetParam().remove(*model_, index), names(index) ? 0 : -1);
        if (names(index)) expected_.erase(expected_.begin() + index);
    }
    bool names(int index) const { return index >= 0 && index < int(expected_.size()); }
    void expectSame() {
        std::vector<int> marks;
        for (int i = 0; GetParam().mark(*model_, i) != -1; ++i)
            marks.push_back(GetParam().mark(*model_, i));
        ASSERT_EQ(marks, expected_);
        ASSERT_EQ(GetParam().mark(*model_, -1), -1);
    }

    // What follows from the lists: the numbers of the continuous frames' slots, the announcements
    // of their services at the front of the pairs, and the one list of all channels.
    void expectConsistent() {
        const ConfigTables& tables = model_->tables();
        std::size_t slots = 0, services = 0;
        for (const MultiplexFrame& frame : tables.continuous.frames) {
            for (const std::uint8_t slot : frame.timeSlots) ASSERT_EQ(slot, slots++);
            if (frame.id == 0) continue;
            for (const ServiceRecord& service : frame.services)
                ASSERT_EQ(tables.continuousServices.entries[services++],
                          (ServiceFrequencyEntry{service.serviceId, 0, 0}));
        }
        for (std::size_t i = 0; i < model_->flatChannels().size(); ++i)
            ASSERT_EQ(model_->flatChannels()[i].position, i);
    }

    std::mt19937 random_{7};
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    std::vector<int> expected_;
};

TEST_P(Lists, DoWhatAPlainListDoes) {
    for (int step = 0; step < 500 && !HasFatalFailure(); ++step) {
        // From -1 to one behind the last.
        const int index = draw(expected_.size() + 2) - 1, mark = 1 + draw(200);
        const int action = draw(step % 200 < 140 ? 5 : 3);
        if (action == 0) set(index, mark);
        if (action == 1) remove(index);
        if (action > 1) add(mark, std::min(index, int(expected_.size())));
        expectSame();
        expectConsistent();
    }
    // Nothing of what was removed is sent: what is behind a list's elements would be lost here.
    for (int i = 0; i < 3; ++i) remove(0);
    const auto sent = model_->configuration();
    model_->load(*sent);
    EXPECT_TRUE(std::ranges::equal(bytesOf(model_->configuration()->image), bytesOf(sent->image)));
}

INSTANTIATE_TEST_SUITE_P(
    Store, Lists,
    testing::Values(listOf<FrequencyPoint>(
                        "FrequencyPoints", 16, false,
                        [](int mark) {
                            return FrequencyPoint{byte(mark), 0, {}, 0};
                        },
                        &FrequencyPoint::channelNumber,
                        [](auto& m, int i, auto& r) { return m.getFrequencyPoint(i, r); },
                        [](auto& m, auto r, int) { return m.addFrequencyPoint(r); },
                        [](auto& m, int i, auto r) { return m.setFrequencyPoint(i, r); },
                        [](auto& m, int i) { return m.removeFrequencyPoint(i); }),
                    listOf<NeighbourNetwork>(
                        "Neighbours", 16, false,
                        [](int mark) { return NeighbourNetwork{1, 2, 0, 0, byte(mark), 0}; },
                        &NeighbourNetwork::networkNumber,
                        [](auto& m, int i, auto& r) { return m.getNeighbourNetwork(i, r); },
                        [](auto& m, auto r, int) { return m.addNeighbourNetwork(r); },
                        [](auto& m, int i, auto r) { return m.setNeighbourNetwork(i, r); },
                        [](auto& m, int i) { return m.removeNeighbourNetwork(i); }),
                    listOf<InputChannelRecord>(
                        "Channels", 60, true,
                        [](int mark) { return test::channel(ChannelType::Esg, 1, byte(mark)); },
                        &InputChannelRecord::port,
                        [](auto& m, int i, auto& r) {
                            FlatChannelList list;
                            if (m.getChannels(3, list) != 0 || i < 0 || i >= int(list.size()))
                                return -1;
                            r = list[static_cast<std::size_t>(i)];
                            return 0;
                        },
                        [](auto& m, const auto& r, int at) {
                            return m.addChannel(
                                r, at == -1 ? ConfigModel::atEnd : static_cast<std::uint32_t>(at));
                        },
                        [](auto& m, int i, const auto& r) { return m.updateChannel(i, r); },
                        [](auto& m, int i) { return m.removeChannel(3, i); }),
                    pairs("ContinuousPairs", continuous), pairs("ShortTimePairs", shortTime),
                    frames("ContinuousFrames", continuous), frames("ShortTimeFrames", shortTime),
                    services("ContinuousServices", continuous),
                    services("ShortTimeServices", shortTime)),
    [](const auto& list) { return list.param.name; });

}  // namespace
}  // namespace korvane
