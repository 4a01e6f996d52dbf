#include "host/robot.h"

#include <commdlg.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/sample_dialog.h"

namespace korvane::host {
namespace {

using testing::ElementsAre;

class RobotTest : public testing::Test {
  protected:
    void drive(const std::function<void(Robot&, HWND)>& script) {
        RobotThread robot([&](Robot& r) { script(r, r.waitDialog("样例")); });
        robot.finish();
    }
    static std::string note(int id, int code) {
        return "notify " + std::to_string(id) + "/" + std::to_string(code);
    }
    static std::string command(int id, int code) {
        return "command " + std::to_string(id) + "/" + std::to_string(code);
    }
    SampleDialog dialog_;
};

TEST_F(RobotTest, ReadsAndChoosesInListsOfText) {
    drive([&](Robot& robot, HWND dialog) {
        HWND combo = robot.waitControl(dialog, SampleDialog::combo);
        EXPECT_THAT(robot.comboItems(combo), ElementsAre("甲", "乙", "丙"));
        EXPECT_EQ(robot.comboSelection(combo), -1);
        robot.selectCombo(combo, 2);
        EXPECT_EQ(robot.comboSelection(combo), 2);
        HWND box = robot.waitControl(dialog, SampleDialog::listBox);
        EXPECT_THAT(robot.listBoxItems(box), ElementsAre("甲", "乙", "丙"));
        robot.selectListBox(box, 1);
        HWND tab = robot.waitControl(dialog, SampleDialog::tab);
        EXPECT_THAT(robot.tabTitles(tab), ElementsAre("甲", "乙", "丙"));
        robot.selectTab(tab, 1);
    });
    EXPECT_TRUE(dialog_.saw(command(SampleDialog::combo, CBN_SELCHANGE)));
    EXPECT_TRUE(dialog_.saw(command(SampleDialog::listBox, LBN_SELCHANGE)));
    EXPECT_TRUE(dialog_.saw(note(SampleDialog::tab, static_cast<int>(TCN_SELCHANGE))));
}

TEST_F(RobotTest, EntersTextAndClicks) {
    drive([&](Robot& robot, HWND dialog) {
        HWND edit = robot.waitControl(dialog, SampleDialog::edit);
        robot.setText(edit, "中央一套 CCTV-1");
        EXPECT_EQ(robot.text(edit), "中央一套 CCTV-1");
        robot.click(dialog, SampleDialog::button);
        robot.settle();
    });
    EXPECT_TRUE(dialog_.saw(command(SampleDialog::edit, EN_CHANGE)));
    EXPECT_TRUE(dialog_.saw(command(SampleDialog::button, BN_CLICKED)));
}

TEST_F(RobotTest, ReadsSelectsAndChecksRows) {
    drive([&](Robot& robot, HWND dialog) {
        HWND list = robot.waitControl(dialog, SampleDialog::list);
        EXPECT_THAT(robot.listColumns(list), ElementsAre("名称", "数值"));
        EXPECT_THAT(robot.listRows(list),
                    ElementsAre(ElementsAre("一行", "42"), ElementsAre("第二行", "42"),
                                ElementsAre("一行", "42")));
        EXPECT_EQ(robot.listSelection(list), -1);
        robot.selectRow(list, 0);
        robot.selectRow(list, 1);
        EXPECT_EQ(robot.listSelection(list), 1);
        EXPECT_EQ(ListView_GetSelectedCount(list), 1u);
        EXPECT_FALSE(robot.isRowChecked(list, 2));
        robot.checkRow(list, 2, true);
        EXPECT_TRUE(robot.isRowChecked(list, 2));
        robot.doubleClickRow(list, 2);
        robot.waitFor("double click", [&] {
            return dialog_.saw(note(SampleDialog::list, static_cast<int>(NM_DBLCLK)));
        });
        EXPECT_EQ(robot.listSelection(list), 2);
        robot.clearSelection(list);
        EXPECT_EQ(robot.listSelection(list), -1);
    });
}

TEST_F(RobotTest, ReadsTreesInDisplayOrder) {
    drive([&](Robot& robot, HWND dialog) {
        HWND tree = robot.waitControl(dialog, SampleDialog::tree);
        std::vector<std::string> rows;
        for (const TreeRow& row : robot.treeRows(tree))
            rows.push_back(std::to_string(row.depth) + row.text);
        EXPECT_THAT(rows, ElementsAre("0复用帧0", "1子帧0", "2业务", "0复用帧1"));
        robot.selectTreeItem(tree, robot.treeRows(tree)[2].item);
        EXPECT_TRUE(dialog_.saw(note(SampleDialog::tree, static_cast<int>(TVN_SELCHANGEDW))));
    });
}

TEST_F(RobotTest, ChoosesFromPopupMenus) {
    drive([&](Robot& robot, HWND dialog) {
        HWND list = robot.waitControl(dialog, SampleDialog::list);
        robot.rightClickRow(list, 1);
        const auto items = robot.waitPopup();
        ASSERT_EQ(items.size(), 4u);
        EXPECT_EQ(items[0].text, "添加");
        EXPECT_TRUE(items[0].enabled);
        EXPECT_TRUE(items[1].separator);
        EXPECT_FALSE(items[2].enabled);
        EXPECT_THROW(robot.choosePopup("修改"), RobotError);
        robot.choosePopup("删除");
        robot.waitFor("the choice", [&] { return dialog_.saw("menu 3"); });
        EXPECT_EQ(robot.listSelection(list), 1);
        robot.rightClickRow(list, -1);
        robot.waitPopup();
        robot.dismissPopup();
        robot.settle();
    });
    EXPECT_TRUE(dialog_.saw("menu 0"));
}

TEST_F(RobotTest, AnswersMessages) {
    int answer = 0;
    RobotThread robot([&](Robot& r) {
        HWND box = r.waitBox("确认要\n继续吗?");
        EXPECT_EQ(r.boxDefault(box), IDNO);
        EXPECT_EQ(r.boxButtons(box).size(), 2u);
        EXPECT_EQ(r.caption(box), "询问");
        r.answer(box, IDYES);
    });
    answer = MessageBoxW(dialog_.hwnd(), L"确认要\n继续吗?", L"询问", MB_YESNO | MB_DEFBUTTON2);
    robot.finish();
    EXPECT_EQ(answer, IDYES);
}

TEST_F(RobotTest, TellsADialogUnderneathFromAReadyOne) {
    RobotThread robot([&](Robot& r) {
        HWND box = r.waitBox("上面");
        const Robot impatient(GetWindowThreadProcessId(box, nullptr), Robot::Milliseconds(20));
        EXPECT_THROW(impatient.waitDialog("样例"), RobotError);
        EXPECT_NE(r.describeWindows().find("上面"), std::string::npos);
        r.answer(box, IDOK);
        r.waitDialog("样例");
    });
    MessageBoxW(dialog_.hwnd(), L"上面", L"", MB_OK);
    robot.finish();
}

// The thread is busy when the click is posted: only settle() can tell that it has been handled.
TEST_F(RobotTest, SettlesAfterWhatWasPostedBefore) {
    RobotThread robot([&](Robot& r) {
        for (int i = 0; i < 20; ++i) r.click(dialog_.hwnd(), SampleDialog::button);
        r.settle();
        EXPECT_EQ(std::count(dialog_.events().begin(), dialog_.events().end(),
                             command(SampleDialog::button, BN_CLICKED)),
                  20);
    });
    robot.finish();
}

std::filesystem::path temporaryFile(const wchar_t* name) {
    return std::filesystem::temp_directory_path() / name;
}

TEST_F(RobotTest, DrivesTheSystemsFileDialogs) {
    const auto wanted = temporaryFile(L"robot.dat");
    std::ofstream(wanted) << "there already";
    std::wstring path(1024, L'\0');
    OPENFILENAMEW request{};
    request.lStructSize = sizeof request;
    request.hwndOwner = dialog_.hwnd();
    request.lpstrTitle = L"选择";
    request.lpstrFile = path.data();
    request.nMaxFile = static_cast<DWORD>(path.size());
    request.Flags = OFN_EXPLORER | OFN_OVERWRITEPROMPT;
    RobotThread robot([&](Robot& r) {
        HWND chooser = r.waitDialog("选择");
        r.chooseFile(chooser, wanted);
        r.answer(r.waitAnyBox(), IDYES);
        r.waitGone(chooser);
    });
    EXPECT_TRUE(GetSaveFileNameW(&request));
    robot.finish();
    EXPECT_EQ(std::filesystem::path(path.c_str()), wanted);
    std::filesystem::remove(wanted);
}

TEST_F(RobotTest, TakesPictures) {
    const auto file = temporaryFile(L"picture.png");
    drive([&](Robot& robot, HWND dialog) { robot.savePicture(dialog, file); });
    std::ifstream in(file, std::ios::binary);
    std::array<unsigned char, 24> head{};
    in.read(reinterpret_cast<char*>(head.data()), head.size());
    EXPECT_THAT(std::vector(head.begin(), head.begin() + 8),
                ElementsAre(0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'));
    RECT area{};
    GetWindowRect(dialog_.hwnd(), &area);
    EXPECT_EQ(head[18] * 256 + head[19], area.right - area.left);
    EXPECT_EQ(head[22] * 256 + head[23], area.bottom - area.top);
    in.close();
    std::filesystem::remove(file);
}

}  // namespace
}  // namespace korvane::host
