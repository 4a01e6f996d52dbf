#pragma once

#include <memory>
#include <vector>

#include "panel/table_pages.h"
#include "ui/page_stack.h"

namespace korvane {

// The list of the control information tables, and beside it the page of the selected one.
class TableList : public Dialog {
  public:
    // The pages in the order of the list.
    explicit TableList(std::vector<std::unique_ptr<Page>> pages);

    // Fills the shown page from the model; the others are filled when they are selected.
    void refresh() { tables_.refresh(); }
    // Takes the shown page's edits into the model; the others' were taken when they were left.
    // False when an entry of it was refused.
    bool commit() { return tables_.commit(); }
    bool changed() const { return tables_.changed(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;

  private:
    void select(int index);
    void placePages();

    std::vector<std::unique_ptr<Page>> pages_;
    PageStack stack_;
    TablePages tables_;
};

// The panel's page that holds the table list.
class ControlTablesPage : public Page {
  public:
    explicit ControlTablesPage(std::vector<std::unique_ptr<Page>> tables);

    void refresh() override { tables_.refresh(); }
    bool commit() override { return tables_.commit(); }
    bool changed() const override { return tables_.changed(); }

  protected:
    bool onInit() override;
    void onSize(int width, int height) override;

  private:
    TableList tables_;
};

}  // namespace korvane
