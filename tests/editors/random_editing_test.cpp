#include <gtest/gtest.h>
#include <set>

#include "editors/ca_table.h"
#include "editors/channel_list.h"
#include "editors/component_selection.h"
#include "editors/frame_form.h"
#include "editors/frame_table.h"
#include "editors/network_table.h"
#include "editors/service_frequency_table.h"
#include "editors/sub_frame_form.h"
#include "model/capacity.h"
#include "resources/ids.h"
#include "support/configurations.h"
#include "support/scripted_forms.h"
#include "support/scripted_prompts.h"

namespace korvane {
namespace {

// Does at random what lists and forms let an operator do, in dialogs within dialogs too.
class RandomOperator : public FormRunner, public test::ScriptedPrompts {
  public:
    explicit RandomOperator(unsigned seed) : random_(seed) {}

    bool confirm(std::string_view, DefaultButton) override { return !oneOf(4); }

    bool run(Form& form) override {
        test::ScriptedControls controls;
        FormExchange exchange(form, controls, *this);
        exchange.show();
        for (int attempt = 0; attempt < 4; ++attempt) {
            fillIn(form, exchange, controls);
            if (oneOf(6)) break;
            if (exchange.accept()) return true;
        }
        return false;
    }

    // One action; true when the list says that it has changed.
    bool actOn(EditList& list) {
        ListEditor editor(list, *this);
        const auto before = list.rows();
        const auto rows = static_cast<int>(before.size());
        ListEditor::Selection selection;
        for (int row = 0; row < rows; ++row)
            if (oneOf(rows)) selection.push_back(row);
        const bool changed = act(editor, list, selection);
        EXPECT_TRUE(changed || list.rows() == before);
        return changed;
    }

    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  private:
    bool oneOf(int cases) { return below(cases) == 0; }

    bool act(ListEditor& editor, EditList& list, const ListEditor::Selection& selection) {
        const int action = below(12);
        if (action == 0) return editor.remove(selection);
        if (action < 3) return editor.edit(selection);
        if (action == 3) return list.open(selection.empty() ? EditList::noRow : selection[0]);
        return action == 4 ? editor.addAnywhere(selection) : editor.add(selection);
    }

    void fillIn(Form& form, FormExchange& exchange, test::ScriptedControls& controls) {
        for (auto& [control, text] : controls.texts)
            if (oneOf(2)) text = number();
        // What that shows may make other choices of it.
        for (const auto& [control, items] : std::map(controls.items))
            choose(control, exchange, controls);
        for (auto& [control, checked] : controls.checks) checked = oneOf(2);
        for (auto& [control, address] : controls.addresses)
            address = {225, 0, 0, static_cast<std::uint8_t>(below(250))};
        if (auto* selection = dynamic_cast<ComponentSelectionForm*>(&form))
            for (int row = 0; row < static_cast<int>(selection->rows().size()); ++row)
                if (oneOf(2)) controls.rows[IDC_CANDIDATES].push_back(row);
        if (auto* frame = dynamic_cast<FrameForm*>(&form)) work(*frame, exchange);
        if (auto* service = dynamic_cast<SubFrameForm*>(&form))
            for (EditList* list : {&service->video(), &service->audio(), &service->ecm()})
                actOn(*list);
    }

    void choose(int control, FormExchange& exchange, test::ScriptedControls& controls) {
        const auto items = static_cast<int>(controls.items.at(control).size());
        if (items > 0 && !oneOf(3)) controls.selections[control] = below(items);
        exchange.entered(control);
    }

    void work(FrameForm& frame, FormExchange& exchange) {
        for (int i = below(8); i >= 0; --i) {
            const auto services = frame.frame().services;
            const bool changed = actOn(oneOf(4) ? frame.timeSlots() : frame.subFrames());
            EXPECT_TRUE(changed || frame.frame().services == services);
            exchange.entered(IDC_SUB_FRAMES);
        }
    }

    // Often a small one, now and then none.
    std::string number() {
        static constexpr int ends[] = {5, 12, 45, 160, 1000, 70'000, 500'000};
        return oneOf(40) ? "x" : std::to_string(below(ends[below(std::size(ends))]));
    }

    std::mt19937 random_;
};

// Descriptions and the carried bytes of a service have no place in the image.
std::unique_ptr<ConfigTables> inImage(const ConfigTables& tables) {
    auto copy = copyOf(tables);
    for (MultiplexTable* table : {&copy->continuous, &copy->shortTime})
        for (MultiplexFrame& frame : table->frames)
            for (ServiceRecord& service : frame.services)
                service.description = {}, service.carried = {};
    return copy;
}

void expectChannels(const FlatChannelList& channels) {
    std::set<std::uint32_t> ids;
    std::set<std::pair<Ipv4, std::uint16_t>> addresses;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        EXPECT_EQ(channels[i].position, i);
        ids.insert(channels[i].channelId);
        addresses.insert({channels[i].address, channels[i].port});
    }
    EXPECT_EQ(ids.size() + addresses.size(), 2 * channels.size());
}

void expectFrames(const ConfigTables& tables) {
    std::size_t slots = 0;
    std::set<std::uint8_t> frameIds;
    for (const MultiplexTable* table : {&tables.continuous, &tables.shortTime})
        for (const MultiplexFrame& frame : table->frames) {
            std::uint32_t total = 0;
            EXPECT_LT(frame.id, limits::frames);
            EXPECT_TRUE(frameIds.insert(frame.id).second) << int{frame.id};
            EXPECT_FALSE(totalBandwidthOverflows(frame, total, nullptr)) << int{frame.id};
            EXPECT_FALSE(frame.timeSlots.empty());
            for (const std::uint8_t slot : frame.timeSlots) {
                EXPECT_LT(slot, limits::timeSlots) << int{frame.id};
                EXPECT_TRUE(table != &tables.continuous || slot == slots++) << int{frame.id};
            }
        }
}

// Of the channels, those that only one frame may have have one.
void expectServices(const ConfigTables& tables) {
    std::set<std::uint16_t> serviceIds;
    std::map<std::tuple<std::uint8_t, Ipv4, std::uint16_t>, const MultiplexFrame*> owners;
    for (const MultiplexTable* table : {&tables.continuous, &tables.shortTime})
        for (const MultiplexFrame& frame : table->frames) {
            std::set<std::uint8_t> numbers;
            for (const ServiceRecord& service : frame.services) {
                EXPECT_TRUE(numbers.insert(service.subFrameNumber).second) << int{frame.id};
                const bool isNew = serviceIds.insert(service.serviceId).second;
                EXPECT_TRUE(isNew || table == &tables.shortTime) << service.serviceId;
                for (const InputChannelRecord& channel : service.components) {
                    const auto type = static_cast<ChannelType>(channel.type);
                    if (type == ChannelType::Esg || type == ChannelType::Data) continue;
                    const std::tuple stream(channel.receiveMode, channel.address, channel.port);
                    EXPECT_EQ(owners.try_emplace(stream, &frame).first->second, &frame);
                }
            }
        }
}

void expectPairs(const ConfigTables& tables) {
    const std::uint8_t own = tables.continuous.header[1];
    const auto& pairs = tables.continuousServices.entries;
    std::size_t next = 0;
    for (const MultiplexFrame& frame : tables.continuous.frames)
        for (const ServiceRecord& service : frame.services) {
            if (frame.id == 0) continue;
            EXPECT_EQ(pairs.slots().at(next++), (ServiceFrequencyEntry{service.serviceId, own, 0}));
        }
    EXPECT_EQ(std::ranges::count(pairs, own, &ServiceFrequencyEntry::channelNumber), next);
}

class RandomEditing : public testing::TestWithParam<unsigned> {
  protected:
    // All that would be sent or filed, as bytes.
    std::string bytes() const {
        const auto now = model_->configuration();
        const auto text = [](const auto& part) {
            return std::string(reinterpret_cast<const char*>(&part), sizeof part);
        };
        return text(now->image) + text(now->channels) + text(now->descriptions);
    }

    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    RandomOperator operator_{GetParam()};
    Editing editing_{*model_, operator_, operator_};
    ChannelList channels_{editing_};
    FrequencyPointList points_{editing_};
    NeighbourNetworkList neighbours_{editing_};
    CaSystemList ca_{editing_};
    ServiceFrequencyList pairs_{editing_, TableKind::Continuous},
        shortTimePairs_{editing_, TableKind::ShortTime};
    FrameList frames_{editing_, TableKind::Continuous},
        shortTimeFrames_{editing_, TableKind::ShortTime};
};

TEST_P(RandomEditing, KeepsTheModelWithinItsLimitsAndACancelledDialogChangesNothing) {
    EditList* const lists[] = {&frames_, &shortTimeFrames_, &channels_,   &pairs_,
                               &ca_,     &shortTimePairs_,  &neighbours_, &points_};
    model_->setMultiplexHeader({2, 20, 1});
    for (std::uint8_t i = 0; i < 56; ++i)
        model_->addChannel(test::channel(ChannelType(i % 8), i, 5), ConfigModel::atEnd);
    std::string now = bytes();
    for (int action = 0; action < 300 && !HasFailure(); ++action) {
        SCOPED_TRACE(action);
        channels_.select(static_cast<ChannelType>(operator_.below(limits::channelTypes)));
        // Most often the first ones: frames have the most to go wrong.
        EditList* list = lists[operator_.below(8) * operator_.below(9) / 8];
        const bool changed = operator_.actOn(*list);
        const std::string last = std::exchange(now, bytes());
        EXPECT_TRUE(changed || now == last);
        if (!changed) continue;
        expectChannels(model_->flatChannels());
        expectFrames(model_->tables());
        expectServices(model_->tables());
        // Pairs themselves are the operator's: a change of the frames puts them right.
        if (list == &frames_) expectPairs(model_->tables());
        const auto decoded = std::make_unique<ConfigTables>();
        decodeImage(model_->configuration()->image, *decoded);
        EXPECT_TRUE(*decoded == *inImage(model_->tables()));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEditing, testing::Range(1u, 5u));

}  // namespace
}  // namespace korvane
