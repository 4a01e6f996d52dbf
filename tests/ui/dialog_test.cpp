#include "ui/dialog.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "resources/ids.h"
#include "support/recorded_log.h"
#include "support/robot.h"
#include "ui/modal.h"
#include "ui/window_prompts.h"

namespace korvane {
namespace {

constexpr const char* caption = "关于 Korvane管理软件";
constexpr UINT askMessage = WM_APP;

class TestDialog : public Dialog {
  public:
    TestDialog() : Dialog(IDD_ABOUT) {}
    std::function<void()> atAsk;
    int failures = 0;  // how often it cannot be initialised

  protected:
    bool onInit() override {
        if (failures-- > 0) throw std::runtime_error("no");
        return true;
    }
    std::optional<LRESULT> onNotify(const NMHDR& header) override {
        if (header.code != 7) return std::nullopt;
        return 42;
    }
    std::optional<INT_PTR> onMessage(UINT message, WPARAM, LPARAM) override {
        if (message != askMessage) return std::nullopt;
        atAsk();
        return TRUE;
    }
};

TEST(Dialog, FailureToInitialiseReachesTheCaller) {
    TestDialog dialog;
    dialog.failures = 2;
    EXPECT_THROW(dialog.create(nullptr), std::runtime_error);
    EXPECT_THROW(dialog.showModal(), std::runtime_error);
    EXPECT_EQ(dialog.hwnd(), nullptr);
    EXPECT_TRUE(dialog.create(nullptr)) << "and can be tried again";
    EXPECT_FALSE(dialog.create(nullptr)) << "but not twice";
}

TEST(Dialog, FailureInAHandlerIsShownLoggedAndGoesNoFurther) {
    test::RecordedLog log;
    TestDialog dialog;
    dialog.atAsk = [] { throw std::runtime_error("磁盘已满"); };
    RobotThread robot([](Robot& r) {
        const HWND shown = r.waitDialog(caption);
        PostMessageW(shown, askMessage, 0, 0);
        r.answer(r.waitBox("操作未完成，程序内部错误:\n磁盘已满"), IDOK);
        r.command(shown, IDCANCEL);
    });
    EXPECT_EQ(dialog.showModal(), IDCANCEL);
    EXPECT_EQ(log.lines(), std::vector<std::string>{"2 窗口过程异常: 磁盘已满"});
}

TEST(Dialog, AnswersNotificationsAndMayDestroyItselfInAHandler) {
    auto dialog = std::make_unique<TestDialog>();
    dialog->atAsk = [&] { dialog.reset(); };
    ASSERT_TRUE(dialog->create(nullptr));
    const NMHDR header{nullptr, 0, 7};
    EXPECT_EQ(SendMessageW(dialog->hwnd(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header)), 42);
    SendMessageW(dialog->hwnd(), askMessage, 0, 0);
    EXPECT_EQ(dialog, nullptr);
}

// A menu over a dialog over a dialog, all ended from the innermost loop: no command goes on.
TEST(Dialog, NestedDialogsAndTheirMenuAreDismissedTogether) {
    TestDialog outer, inner;
    outer.atAsk = [&] {
        inner.showModal();
        ADD_FAILURE() << "it went on";
    };
    inner.atAsk = [&, asked = 0]() mutable {
        if (asked++ > 0) return dismissModals();
        const ModalScope scope;
        TrackPopupMenu(GetSystemMenu(inner.hwnd(), FALSE), 0, 0, 0, 0, inner.hwnd(), nullptr);
        scope.check();
        ADD_FAILURE() << "it went on";
    };
    RobotThread robot([&](Robot& r) {
        const HWND first = r.waitDialog(caption);
        PostMessageW(first, askMessage, 0, 0);
        PostMessageW(r.waitDialog(caption, first), askMessage, 0, 0);
        const HWND menu = r.waitClass("#32768");
        r.send(inner.hwnd(), askMessage);
        r.waitGone(menu);
    });
    EXPECT_THROW(outer.showModal(), Interrupted);
    EXPECT_EQ(ModalScope::depth(), 0);
    EXPECT_EQ(inner.hwnd(), nullptr);
}

// What a dialog shows is above it, not only above the host: the dialog must wait, too.
TEST(Dialog, OwnsAndWaitsForWhatItShows) {
    const std::function<void()> cases[] = {
        [] { WindowPrompts().warning("完成"); },
        [] {
            WindowPrompts().chooseFileToOpen({"dat", "*|*||"});
        },
        [] { TestDialog().showModal(); },
        [] { throw std::runtime_error("磁盘已满"); },
    };
    for (const auto& show : cases) {
        TestDialog dialog;
        dialog.atAsk = show;
        RobotThread robot([](Robot& r) {
            const HWND below = r.waitDialog(caption);
            PostMessageW(below, askMessage, 0, 0);
            const HWND above = r.waitFor("a window above the dialog", [&] {
                const HWND top = r.topWindows().front();
                return top == below ? nullptr : top;
            });
            EXPECT_EQ(GetWindow(above, GW_OWNER), below);
            EXPECT_FALSE(IsWindowEnabled(below));
            r.command(above, IDCANCEL);
            r.waitGone(above);
            r.command(below, IDCANCEL);
        });
        EXPECT_EQ(dialog.showModal(), IDCANCEL);
    }
}

}  // namespace
}  // namespace korvane
