#include "ui/dialog.h"

#include <gtest/gtest.h>
#include <stdexcept>

#include "host/robot.h"
#include "resources/ids.h"
#include "ui/modal.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;

constexpr const char* caption = "关于 Korvane管理软件";
constexpr UINT askMessage = WM_APP;

class TestDialog : public Dialog {
  public:
    TestDialog() : Dialog(IDD_ABOUT) {}
    std::function<void()> atAsk;
    int failures = 0;  // how often it cannot be initialised
    int destroyed = 0;

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
    void onDestroy() override { ++destroyed; }
};

TEST(Dialog, EndsWithTheButtonThatWasPressed) {
    for (const int button : {IDOK, IDCANCEL}) {
        TestDialog dialog;
        RobotThread robot([&](Robot& r) { r.command(r.waitDialog(caption), button); });
        EXPECT_EQ(dialog.showModal(nullptr), button);
        EXPECT_EQ(dialog.hwnd(), nullptr);
        EXPECT_EQ(dialog.destroyed, 1);
    }
}

TEST(Dialog, FailureToInitialiseReachesTheCaller) {
    TestDialog dialog;
    dialog.failures = 2;
    EXPECT_THROW(dialog.create(nullptr), std::runtime_error);
    EXPECT_THROW(dialog.showModal(nullptr), std::runtime_error);
    EXPECT_EQ(dialog.hwnd(), nullptr);
    EXPECT_TRUE(dialog.create(nullptr)) << "and can be tried again";
    EXPECT_FALSE(dialog.create(nullptr)) << "but not twice";
}

TEST(Dialog, FailureInAHandlerIsShownAndGoesNoFurther) {
    TestDialog dialog;
    dialog.atAsk = [] { throw std::runtime_error("磁盘已满"); };
    RobotThread robot([](Robot& r) {
        const HWND shown = r.waitDialog(caption);
        PostMessageW(shown, askMessage, 0, 0);
        r.answer(r.waitBox("操作未完成，程序内部错误:\n磁盘已满"), IDOK);
        r.command(shown, IDCANCEL);
    });
    EXPECT_EQ(dialog.showModal(nullptr), IDCANCEL);
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

// A dialog over a dialog, both ended from the innermost message loop: neither command goes on.
TEST(Dialog, NestedDialogsAreDismissedTogether) {
    TestDialog outer, inner;
    outer.atAsk = [&] {
        inner.showModal(outer.hwnd());
        ADD_FAILURE() << "it went on";
    };
    inner.atAsk = [] { dismissModals(); };
    RobotThread robot([](Robot& r) {
        const HWND first = r.waitDialog(caption);
        PostMessageW(first, askMessage, 0, 0);
        PostMessageW(r.waitDialog(caption, first), askMessage, 0, 0);
    });
    EXPECT_THROW(outer.showModal(nullptr), Interrupted);
    EXPECT_EQ(ModalScope::depth(), 0);
    EXPECT_EQ(inner.hwnd(), nullptr);
}

}  // namespace
}  // namespace korvane
