#include "ui/edit_list_view.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/robot.h"
#include "support/scripted_prompts.h"
#include "support/test_host.h"
#include "ui/form_page.h"
#include "ui/keyboard_hook.h"
#include "ui/modal.h"

namespace korvane {
namespace {

// Letters; what is done with them is noted. Nothing is offered that the test does not offer.
class Letters : public EditList {
  public:
    std::vector<ListColumn> columns() const override { return {{"字母", 90}, {"大写", 60}}; }
    std::vector<ListRow> rows() const override {
        std::vector<ListRow> rows;
        for (const char letter : letters)
            rows.push_back({{letter}, {static_cast<char>(letter - 'a' + 'A')}});
        return rows;
    }
    Offer offer(int row) const override { return row == noRow ? withoutRow : withRow; }
    bool add(int before) override {
        letters.insert(before == noRow ? letters.size() : static_cast<std::size_t>(before), 1, 'z');
        return true;
    }
    bool edit(int row) override {
        letters[static_cast<std::size_t>(row)] = 'e';
        return true;
    }
    bool remove(int row) override {
        letters.erase(static_cast<std::size_t>(row), 1);
        return true;
    }

    std::string letters = "abcd";
    Offer withRow{true, true, true}, withoutRow{true, false, false};
};

// Any dialog with a list serves.
class LettersForm : public Form {
  public:
    int dialog() const override { return IDD_CA_PAGE; }
    void describe(Fields& fields) override { fields.flag(IDC_SEND_TABLE, on, IDC_SECTION_COUNT); }
    int accept() override { return 0; }

    bool on = false;
};

class LettersPage : public FormPage {
  public:
    LettersPage(Form& form, EditList& list, Prompts& prompts) : FormPage(form, prompts) {
        addList(list, prompts, IDC_CA_SYSTEMS, secondListMenu);
    }
    int menus = 0;

  protected:
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        menus += message == WM_ENTERMENULOOP;
        return FormPage::onMessage(message, wParam, lParam);
    }
};

class EditListViewTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(page_.create(host_.window()));
        page_.place({0, 0, 600, 400});
        page_.show(true);
        list_ = ListView(GetDlgItem(page_.hwnd(), IDC_CA_SYSTEMS));
        list_.focus();
        keyboard_.emplace(page_.hwnd());
    }

    // As a host's loop, until there is nothing left to do.
    static void pump() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    // Presses a key in the list, with another one held down.
    void press(WORD key, BYTE held = 0, UINT message = WM_KEYDOWN) const {
        std::array<BYTE, 256> keys{};
        keys[held] = 0x80;
        SetKeyboardState(keys.data());
        PostMessageW(list_.window(), message, key, 1);
        pump();
        SetKeyboardState(std::array<BYTE, 256>{}.data());
    }
    void fill(const std::string& letters) {
        letters_.letters = letters;
        page_.refresh();
        list_.mark(-1);
    }
    // The texts of the menu that `open` opens, which `choose` then deals with.
    std::string menu(const std::function<void()>& open,
                     const std::function<void(Robot&)>& choose = &Robot::dismissPopup) {
        std::string texts;
        RobotThread robot([&](Robot& r) {
            for (const host::PopupItem& item : r.waitPopup()) texts += item.text;
            GetWindowRect(r.waitClass("#32768"), &menuArea_);
            choose(r);
        });
        open();
        robot.finish();
        pump();
        return texts;
    }
    void rightClick(int row) {
        robot_.rightClickRow(list_.window(), row);
        pump();
    }
    void doubleClick(int row) {
        robot_.doubleClickRow(list_.window(), row);
        pump();
    }
    // As with Ctrl held.
    void doubleClickBesideSelection(int row) {
        NMITEMACTIVATE click{};
        click.hdr = {list_.window(), IDC_CA_SYSTEMS, static_cast<UINT>(NM_DBLCLK)};
        click.iItem = row;
        SendMessageW(page_.hwnd(), WM_NOTIFY, IDC_CA_SYSTEMS, reinterpret_cast<LPARAM>(&click));
    }
    // What shows, the selected rows in upper case.
    std::string shown() const {
        std::string text;
        for (int row = 0; row < list_.count(); ++row) text += list_.cell(row, 0);
        for (const int row : list_.allSelected()) {
            char& letter = text[static_cast<std::size_t>(row)];
            letter = static_cast<char>(letter - 'a' + 'A');
        }
        return text;
    }

    test::TestHost host_;
    const Robot robot_{GetCurrentThreadId()};
    test::ScriptedPrompts prompts_;
    Letters letters_;
    LettersForm form_;
    LettersPage page_{form_, letters_, prompts_};
    ListView list_{nullptr};
    std::optional<KeyboardHook> keyboard_;
    RECT menuArea_{};
};

TEST_F(EditListViewTest, TheMenuOffersWhatTheSelectionAllows) {
    const struct {
        EditList::Offer offer;
        const char* items;
    } cases[] = {{{true, true, true}, "添加修改删除"},
                 {{true, false, false}, "添加"},
                 {{false, true, true}, "修改删除"},
                 {{false, false, true}, "删除"}};
    for (const auto& [offer, items] : cases) {
        letters_.withRow = offer;
        EXPECT_EQ(menu([&] { rightClick(2); }), items);
        list_.select(1);
        EXPECT_EQ(menu([&] { press(VK_F10, VK_SHIFT, WM_SYSKEYDOWN); }), items);
    }
    letters_.withRow = {};
    rightClick(2);
    EXPECT_EQ(page_.menus, 8) << "none with nothing in it";
    EXPECT_EQ(menu([&] {
                  list_.select(-1);
                  rightClick(-1);
              }),
              "添加");
}

TEST_F(EditListViewTest, TheMenuStandsAtTheCursorOrAtTheSelectedRow) {
    SetCursorPos(150, 200);
    menu([&] { rightClick(0); });
    EXPECT_EQ(menuArea_.left, 150);
    EXPECT_EQ(menuArea_.top, 200);
    fill(std::string(60, 'a'));
    list_.select(50);
    list_.makeVisible(0);
    menu([&] {
        PostMessageW(list_.window(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list_.window()), -1);
        pump();
    });
    POINT row{list_.rowArea(50).left, list_.rowArea(50).bottom};
    EXPECT_LE(row.y, list_.area().bottom) << "it came into view";
    ClientToScreen(list_.window(), &row);
    EXPECT_EQ(menuArea_.left, row.x);
    EXPECT_EQ(menuArea_.top, row.y);
}

TEST_F(EditListViewTest, InsertAddsAtTheEndWhereOnlyTheRowStandsAgainstIt) {
    list_.select(1);
    press(VK_INSERT);
    EXPECT_EQ(shown(), "aZbcd");
    letters_.withRow = {};
    for (const WORD key : {VK_INSERT, VK_RETURN, VK_DELETE}) press(key);
    EXPECT_EQ(shown(), "aZbcdz");
    letters_.withoutRow = {};
    press(VK_INSERT);
    EXPECT_EQ(shown(), "aZbcdz");
}

TEST_F(EditListViewTest, ADoubleClickEditsTheRowUnderIt) {
    doubleClick(1);
    EXPECT_EQ(shown(), "aEcd");
    doubleClickBesideSelection(-1);
    EXPECT_EQ(shown(), "aEcd") << "below the rows";
    doubleClickBesideSelection(3);
    EXPECT_EQ(shown(), "aEce");
    letters_.withRow.edit = false;
    doubleClick(2);
    EXPECT_EQ(shown(), "aeCe");
}

TEST_F(EditListViewTest, ARefillKeepsThePlaceAndTheFirstSelectedRowThatIsThere) {
    fill(std::string(60, 'b'));
    list_.select(30);
    list_.makeVisible(45);
    const int top = list_.topRow();
    ASSERT_GT(top, 0);
    for (const WORD key : {VK_INSERT, VK_RETURN}) {
        press(key);
        EXPECT_EQ(list_.allSelected(), std::vector<int>{30}) << key;
        EXPECT_EQ(list_.topRow(), top) << key;
    }
    for (const int row : {31, 32})
        ListView_SetItemState(list_.window(), row, LVIS_SELECTED, LVIS_SELECTED);
    prompts_.answers = {true, true, true};
    press(VK_DELETE);
    EXPECT_EQ(list_.count(), 58);
    EXPECT_EQ(list_.allSelected(), std::vector<int>{30}) << "only the first of three";
    EXPECT_EQ(list_.topRow(), top);
    list_.select(57);
    press(VK_DELETE);
    EXPECT_EQ(list_.allSelected(), std::vector<int>{0}) << "there is no row 57 any more";
    list_.selectAll();
    press(VK_DELETE);
    EXPECT_EQ(list_.count(), 0);
}

TEST_F(EditListViewTest, CopiesTheSelectedRowsAndSelectsAll) {
    press('A', VK_CONTROL);
    EXPECT_EQ(shown(), "ABCD");
    list_.select(1);
    ListView_SetItemState(list_.window(), 3, LVIS_SELECTED, LVIS_SELECTED);
    press('C', VK_CONTROL);
    list_.select(-1);
    press('C', VK_CONTROL);  // of nothing: what was copied stays
    EXPECT_EQ(robot_.clipboardText(), "b\tB\r\nd\tD\r\n");
}

// The host's own windows are not the panel's to close, whatever they came up over.
TEST_F(EditListViewTest, TakingDownTheMenuLeavesADialogThatTheHostOpenedMeanwhile) {
    HWND dialog = nullptr;
    menu([&] { rightClick(1); },
         [&](Robot& r) {
             const HWND menu = r.waitClass("#32768");
             host_.run([&] {
                 dialog = CreateWindowExW(0, L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50,
                                          nullptr, nullptr, nullptr, nullptr);
                 dismissModals();
             });
             r.waitGone(menu);
         });
    EXPECT_TRUE(IsWindowVisible(dialog));
    DestroyWindow(dialog);
}

TEST_F(EditListViewTest, ACheckBoxOfThePageEnablesItsControl) {
    const HWND count = GetDlgItem(page_.hwnd(), IDC_SECTION_COUNT);
    for (const bool on : {true, false}) {
        SendMessageW(GetDlgItem(page_.hwnd(), IDC_SEND_TABLE), BM_CLICK, 0, 0);
        press(VK_INSERT);  // a change of the list leaves what was entered elsewhere
        EXPECT_TRUE(page_.changed());
        EXPECT_EQ(IsWindowEnabled(count) != FALSE, on);
        EXPECT_TRUE(page_.commit());
        EXPECT_EQ(form_.on, on);
    }
}

}  // namespace
}  // namespace korvane
