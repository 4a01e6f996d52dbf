#include "ui/window_prompts.h"

#include <gtest/gtest.h>

#include "support/robot.h"
#include "ui/modal.h"

namespace korvane {
namespace {

const Prompts::FileChoice choice{"ipr", "korvane Files (*.dat)|*.dat|All Files (*.*)|*.*||"};

// What the last chooser was asked, and what it is to answer.
DWORD flags;
std::wstring filter, extension, folder;
const wchar_t* answer = L"C:\\配置\\站点.ipr";

BOOL WINAPI scriptedChooser(OPENFILENAMEW* request) {
    flags = request->Flags & (OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR | OFN_FILEMUSTEXIST);
    const wchar_t* end = request->lpstrFilter;
    while (end[0] != L'\0' || end[1] != L'\0') ++end;
    filter.assign(request->lpstrFilter, end);
    extension = request->lpstrDefExt;
    folder = request->lpstrInitialDir ? request->lpstrInitialDir : L"none";
    if (answer) wcscpy(request->lpstrFile, answer);
    return answer != nullptr;
}

TEST(WindowPrompts, TellTheChooserWhatIsWanted) {
    WindowPrompts prompts(&scriptedChooser, &scriptedChooser);
    EXPECT_EQ(prompts.chooseFileToSave(choice), std::filesystem::path(answer));
    EXPECT_EQ(filter, std::wstring(L"korvane Files (*.dat)\0*.dat\0All Files (*.*)\0*.*", 47));
    EXPECT_EQ(extension, L"ipr");
    EXPECT_EQ(flags, DWORD{OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR});
    EXPECT_EQ(prompts.chooseFileToOpen(choice), std::filesystem::path(answer));
    EXPECT_EQ(flags, DWORD{OFN_FILEMUSTEXIST | OFN_NOCHANGEDIR});
    EXPECT_EQ(folder, L"none");
    prompts.chooseFileToOpen({"dat", "", L"C:\\备份"});
    EXPECT_EQ(folder, L"C:\\备份");
    answer = nullptr;
    EXPECT_EQ(prompts.chooseFileToOpen(choice), std::nullopt);
}

TEST(WindowPrompts, AskInBoxesOfTheSystem) {
    const std::pair<Prompts::DefaultButton, int> cases[] = {{Prompts::DefaultButton::Yes, IDYES},
                                                            {Prompts::DefaultButton::No, IDNO}};
    for (const auto& [preset, button] : cases) {
        RobotThread robot([button](Robot& r) {
            const HWND box = r.waitBox("确认要继续吗?\n第二行");
            EXPECT_EQ(r.boxDefault(box), button);
            r.answer(box, button);
        });
        EXPECT_EQ(WindowPrompts().confirm("确认要继续吗?\n第二行", preset), button == IDYES);
    }
}

TEST(WindowPrompts, TellSuccessesFromFailuresByTheIcon) {
    const std::pair<void (Prompts::*)(std::string_view), const wchar_t*> cases[] = {
        {&Prompts::message, IDI_INFORMATION}, {&Prompts::warning, IDI_WARNING}};
    for (const auto& [say, icon] : cases) {
        RobotThread robot([icon](Robot& r) {
            const HWND box = r.waitBox("完成");
            const LRESULT shown = r.send(GetWindow(box, GW_CHILD), STM_GETICON);
            EXPECT_EQ(reinterpret_cast<HICON>(shown), LoadIconW(nullptr, icon));
            r.answer(box, IDOK);
        });
        WindowPrompts prompts;
        (prompts.*say)("完成");
    }
}

TEST(WindowPrompts, ShowTheHourglassWhileTheyAreBusyAndThenWhatWasThere) {
    const HCURSOR before = LoadCursorW(nullptr, IDC_CROSS);
    SetCursor(before);
    EXPECT_TRUE(
        WindowPrompts().whileBusy([] { return GetCursor() == LoadCursorW(nullptr, IDC_WAIT); }));
    EXPECT_EQ(GetCursor(), before);
}

void CALLBACK takeDown(HWND, UINT, UINT_PTR, DWORD) {
    dismissModals();
}

TEST(WindowPrompts, ACommandDoesNotGoOnAfterItsPanelWasTakenDown) {
    RobotThread robot([](Robot& r) {
        const HWND box = r.waitAnyBox();
        // On the windows' own thread, from within the box's message loop.
        PostMessageW(box, WM_TIMER, 1, reinterpret_cast<LPARAM>(&takeDown));
        r.waitGone(box);
    });
    EXPECT_THROW(WindowPrompts().message("完成"), Interrupted);
    EXPECT_EQ(ModalScope::depth(), 0);
}

}  // namespace
}  // namespace korvane
