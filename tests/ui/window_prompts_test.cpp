#include "ui/window_prompts.h"

#include <gtest/gtest.h>

#include "host/robot.h"
#include "ui/modal.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;

constexpr Prompts::FileChoice choice{"ipr", "korvane Files (*.dat)|*.dat|All Files (*.*)|*.*||"};

// What the last chooser was asked, and what it is to answer.
OPENFILENAMEW asked;
std::wstring filter, extension;
const wchar_t* answer = nullptr;

BOOL WINAPI scriptedChooser(OPENFILENAMEW* request) {
    asked = *request;
    const wchar_t* end = request->lpstrFilter;
    while (end[0] != L'\0' || end[1] != L'\0') ++end;
    filter.assign(request->lpstrFilter, end);
    extension = request->lpstrDefExt;
    if (!answer) return FALSE;
    wcscpy(request->lpstrFile, answer);
    return TRUE;
}

TEST(WindowPrompts, TellTheChooserWhatIsWanted) {
    WindowPrompts prompts(&scriptedChooser, &scriptedChooser);
    const auto has = [](DWORD flag) { return (asked.Flags & flag) != 0; };
    answer = L"C:\\配置\\站点.ipr";
    EXPECT_EQ(prompts.chooseFileToSave(choice), std::filesystem::path(answer));
    EXPECT_EQ(filter, std::wstring(L"korvane Files (*.dat)\0*.dat\0All Files (*.*)\0*.*", 47));
    EXPECT_EQ(extension, L"ipr");
    EXPECT_TRUE(has(OFN_OVERWRITEPROMPT) && has(OFN_NOCHANGEDIR) && !has(OFN_FILEMUSTEXIST));
    EXPECT_EQ(prompts.chooseFileToOpen(choice), std::filesystem::path(answer));
    EXPECT_TRUE(has(OFN_FILEMUSTEXIST) && has(OFN_NOCHANGEDIR) && !has(OFN_OVERWRITEPROMPT));
    answer = nullptr;
    EXPECT_EQ(prompts.chooseFileToOpen(choice), std::nullopt);
}

TEST(WindowPrompts, AskInBoxesOfTheSystem) {
    WindowPrompts prompts;
    std::vector<int> presets;
    const auto asks = [&](Prompts::DefaultButton preset, int button) {
        RobotThread robot([&](Robot& r) {
            const HWND box = r.waitBox("确认要继续吗?\n第二行");
            presets.push_back(r.boxDefault(box));
            r.answer(box, button);
        });
        return prompts.confirm("确认要继续吗?\n第二行", preset);
    };
    EXPECT_TRUE(asks(Prompts::DefaultButton::Yes, IDYES));
    EXPECT_FALSE(asks(Prompts::DefaultButton::No, IDNO));
    EXPECT_EQ(presets, (std::vector<int>{IDYES, IDNO}));
}

TEST(WindowPrompts, ACommandDoesNotGoOnAfterItsPanelWasTakenDown) {
    const auto takenDown = [](auto prompt) {
        RobotThread robot([](Robot& r) {
            const HWND box = r.waitAnyBox();
            // On the windows' own thread, from within the box's message loop.
            PostMessageW(
                box, WM_TIMER, 1,
                reinterpret_cast<LPARAM>(+[](HWND, UINT, UINT_PTR, DWORD) { dismissModals(); }));
            r.waitGone(box);
        });
        WindowPrompts prompts;
        EXPECT_THROW(prompt(prompts), Interrupted);
        EXPECT_EQ(ModalScope::depth(), 0);
    };
    takenDown([](Prompts& prompts) { prompts.message("完成"); });
    takenDown([](Prompts& prompts) { prompts.confirm("继续?"); });
}

}  // namespace
}  // namespace korvane
