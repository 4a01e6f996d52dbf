#pragma once

#include <array>

#include "panel/table_pages.h"
#include "ui/page_stack.h"

namespace korvane {

// The list of the control information tables, and beside it the page of the selected one.
class TableList : public Dialog {
  public:
    TableList();

    // Fills the shown page from the model; the others are filled when they are selected.
    void refresh() { tables_.refresh(); }
    // Takes the shown page's edits into the model; the others' were taken when they were left.
    void commit() { tables_.commit(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;

  private:
    static constexpr std::size_t tableCount = 6;

    void select(int index);
    void placePages();

    std::array<Page, tableCount> pages_;
    PageStack stack_;
    TablePages tables_;
};

// The panel's page that holds the table list.
class ControlTablesPage : public Page {
  public:
    ControlTablesPage();

    void refresh() override { tables_.refresh(); }
    void commit() override { tables_.commit(); }

  protected:
    bool onInit() override;
    void onSize(int width, int height) override;

  private:
    TableList tables_;
};

}  // namespace korvane
