#pragma once

#include "ui/edit_list_views.h"
#include "ui/form_dialog.h"
#include "ui/page.h"

namespace korvane {

// A page with fields of its own and lists in which the operator edits. The fields are taken into
// the model when the page is committed, each change of a list at once.
class FormPage : public Page {
  public:
    FormPage(Form& form, Prompts& prompts)
        : Page(form.dialog()), form_(form), exchange_(form, controls_, prompts) {}

    void refresh() override;
    bool commit() override;
    bool changed() const override { return exchange_.changed(); }

  protected:
    // Before the window is made.
    void addList(EditList& list, Prompts& prompts, int control, const ListMenu& menu) {
        lists_.add(list, prompts, control, menu);
    }

    bool onInit() override;
    // The last list takes what there is; a page with another layout has its own.
    void onSize(int width, int height) override;
    bool onCommand(int id, int notification, HWND control) override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    Form& form_;
    DialogControls controls_;
    FormExchange exchange_;
    EditListViews lists_;
};

}  // namespace korvane
