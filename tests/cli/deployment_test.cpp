#include <algorithm>
#include <string>
#include <utility>

#include "command_line.h"
#include "model/object_bytes.h"
#include "support/scripted_link.h"

namespace korvane::test {
namespace {

using testing::HasSubstr;
using Arguments = std::vector<std::string>;

class Deployments : public CommandLine {
  protected:
    // A file that differs from what the device holds.
    Deployments() {
        EXPECT_EQ(run({"fetch", address_, file("before.dat")}), 0);
        const auto changed = read("before.dat");
        changed->image.continuous.frames[1].services[0].bandwidth = newBandwidth;
        write(*changed);
    }
    void write(const Configuration& configuration) {
        cli::Context context{terminal_, link_, nullptr};
        cli::writeConfiguration(context, configuration, file("new.json"), std::nullopt);
    }
    int send(Arguments more) {
        more.insert(more.begin(), {"send", file("new.json"), address_, "--keep-in", file("")});
        return run(more);
    }
    std::uint32_t applied() const {
        return getBigEndian32(reinterpret_cast<const std::uint8_t*>(
            &device_.state().applied.image.continuous.frames[1].services[0].bandwidth));
    }
    std::vector<std::string> keptFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(scratch_.path()))
            if (const auto name = entry.path().filename().string(); name.starts_with(address_))
                names.push_back(name);
        return names;
    }

    static constexpr std::uint32_t oldBandwidth = 500000, newBandwidth = 490000;
};

TEST_F(Deployments, ASendIsShownKeptSentReadBackAndCompared) {
    terminal_.answers = {true};
    const std::uint64_t begin = link_.nowMs();
    ASSERT_EQ(send({}), 0) << terminal_.notes;
    EXPECT_THAT(terminal_.written, HasSubstr("bandwidth 500000 → 490000 bit/s"));
    EXPECT_EQ(terminal_.questions.size(), 1u);
    EXPECT_EQ(applied(), newBandwidth);
    EXPECT_EQ(timesAsked(CommandCode::GetInputChannels), 2u);
    EXPECT_GE(link_.nowMs() - begin, 10000u) << "the setting takes effect first";
    EXPECT_THAT(terminal_.notes, HasSubstr("waiting 10 s"));
    EXPECT_THAT(keptFiles(), testing::ElementsAre("10.1.2.3-2009-04-23-080509.dat"));
    EXPECT_EQ(run({"diff", file("before.dat"), file(keptFiles()[0])}), 0);
    EXPECT_EQ(send({"--yes"}), 0);
    EXPECT_EQ(keptFiles().size(), 2u) << "no copy replaces another";
}

TEST_F(Deployments, ImagesGoOutAsTheyAreAndParametersStay) {
    const auto odd = read("before.dat");
    std::ranges::reverse(std::span(odd->channels.begin(), odd->channels.size()));
    odd->image.continuous.frames[39].head.id = 77;  // beyond the count
    odd->fileReserved.fill(7);
    odd->params.controlPort.address.fill('1');
    write(*odd);
    ASSERT_EQ(send({"--yes", "--force"}), 0) << terminal_.notes;
    EXPECT_THAT(terminal_.notes, HasSubstr("device parameters are compared, but not sent"));
    EXPECT_EQ(timesAsked(CommandCode::SetDeviceParams), 0u);
    EXPECT_EQ(device_.state().applied.image.continuous.frames[39].head.id, 77);
    EXPECT_EQ(run({"fetch", address_, file("after.dat")}), 0);
    const auto after = read("after.dat");
    EXPECT_TRUE(std::ranges::equal(after->channels, odd->channels, [](auto& a, auto& b) {
        return std::ranges::equal(bytesOf(a), bytesOf(b));
    }));
}

TEST_F(Deployments, NothingIsSentThatWasNotWanted) {
    EXPECT_EQ(send({"--dry-run"}), 0);
    EXPECT_TRUE(terminal_.questions.empty());
    EXPECT_EQ(send({}), 1) << "declined";
    const auto bad = read("new.json");
    bad->image.continuous.frames[1].head.id = bad->image.continuous.frames[2].head.id;
    write(*bad);
    EXPECT_EQ(send({"--yes"}), 1);
    EXPECT_THAT(terminal_.notes, HasSubstr("--force"));
    EXPECT_EQ(run({"send", file("new.json"), address_, "--yes", "--force", "--keep-in",
                   file("no folder")}),
              3);
    EXPECT_EQ(timesAsked(CommandCode::SetInputChannels), 0u);
    EXPECT_TRUE(keptFiles().empty());
    EXPECT_EQ(applied(), oldBandwidth);
    EXPECT_EQ(send({"--yes", "--force"}), 0) << terminal_.notes;
}

struct Trouble {
    const char* fault;
    Arguments more;
    int code;
    const char* sentence;
    std::uint32_t applied;
};

// What the device has after a save that went wrong is told, and put right if wanted.
TEST_F(Deployments, ATroubledSendTellsTheStateAndWritesBackIfWanted) {
    const Trouble troubles[] = {
        {"refuse=9@SetInputChannels:1", {"--yes"}, 5, "Nothing was changed", oldBandwidth},
        {"refuse=9@SetImageBlockA:1", {"--yes"}, 5, "up to SetImageBlockA", oldBandwidth},
        {"refuse=9@SetImageBlockA:1",
         {"--yes", "--restore-on-failure"},
         5,
         "has again what it had",
         oldBandwidth},
        {"silence@ActivateConfig:2",
         {"--yes", "--restore-on-failure"},
         4,
         "has again what it had",
         oldBandwidth},
        {"silence@SetImageBlock72",
         {"--yes", "--restore-on-failure"},
         4,
         "writing back",
         oldBandwidth},
        {"lost-answer@ActivateConfig:2", {"--yes"}, 4, "is not known", newBandwidth},
    };
    for (const Trouble& trouble : troubles) {
        device_.faults().clear();
        EXPECT_EQ(run({"send", file("before.dat"), address_, "--yes", "--keep-in", file("")}), 0);
        inject(trouble.fault);
        EXPECT_EQ(send(trouble.more), trouble.code) << trouble.fault;
        EXPECT_THAT(terminal_.notes, HasSubstr(trouble.sentence)) << trouble.fault;
        EXPECT_EQ(applied(), trouble.applied) << trouble.fault;
        EXPECT_TRUE(terminal_.questions.empty());
        EXPECT_EQ(terminal_.notes.contains("to write it back: korvane send"),
                  trouble.more.size() == 1);
    }
}

// While the configuration takes effect, somebody else restores the defaults.
TEST_F(Deployments, AReadBackThatDiffersIsTheAnswerNo) {
    bool restored = false;
    terminal_.onTransient = [&](std::string_view line) {
        if (line != "9 s" || std::exchange(restored, true)) return;
        const Bytes request = frameOf(static_cast<std::uint32_t>(CommandCode::RestoreDefaults), 0);
        device_.receive(request, {0x0100007F, 4000}, link_.nowMs());
    };
    EXPECT_EQ(send({"--yes", "--restore-on-failure"}), 1);
    EXPECT_THAT(terminal_.notes, HasSubstr("holds something else than was sent:\n"
                                           "  frame 1, service 101: bandwidth 490000 → 500000"));
    EXPECT_THAT(terminal_.notes, HasSubstr("has again what it had"));
}

TEST_F(Deployments, WhatCannotBeReadBackIsPutBackIfTheOperatorSaysSo) {
    device_.onEvent([this](const DeviceEvent& event) {
        if (event.command == static_cast<std::uint32_t>(CommandCode::ActivateConfig))
            inject("silence@GetInputChannels:2");
    });
    terminal_.answers = {true, true};
    EXPECT_EQ(send({}), 4);
    EXPECT_EQ(terminal_.questions.size(), 2u);
    EXPECT_THAT(terminal_.notes, HasSubstr("is not read back"));
    EXPECT_EQ(applied(), oldBandwidth);
}

TEST_F(Deployments, CtrlCDuringASaveWaitsForItsEnd) {
    terminal_.interruptAt = "sending to 10.1.2.3 [####";
    EXPECT_EQ(send({"--yes"}), 130);
    EXPECT_EQ(applied(), newBandwidth);
    EXPECT_THAT(terminal_.notes, HasSubstr("it was not read back. What it had is in "));
    terminal_.interruptAsked = false;
    terminal_.interruptAt = "reading";
    EXPECT_EQ(send({"--yes"}), 130);
    EXPECT_THAT(terminal_.notes, HasSubstr("Nothing was changed"));
    EXPECT_EQ(timesAsked(CommandCode::SetInputChannels), 0u);
}

}  // namespace
}  // namespace korvane::test
