#pragma once

#include <functional>
#include <map>

#include "forms/form.h"
#include "ui/dialog.h"
#include "ui/edit_list_views.h"

namespace korvane {

// The controls of a dialog window as a form knows them.
class DialogControls : public FieldControls {
  public:
    void attach(HWND dialog) { dialog_ = dialog; }

    std::string text(int control) const override;
    void setText(int control, std::string_view text) override;
    int selected(int control) const override;
    void select(int control, int index) override;
    void setItems(int control, std::span<const std::string_view> items) override;
    bool checked(int control) const override;
    void setChecked(int control, bool checked) override;
    std::vector<int> checkedRows(int control) const override;
    void setCheckedRows(int control, const std::vector<int>& rows) override;
    std::optional<Ipv4> address(int control) const override;
    void setAddress(int control, const std::optional<Ipv4>& address) override;
    void setLevel(int control, int percent) override;
    void setEnabled(int control, bool enabled) override;
    void setVisible(int control, bool visible) override;
    void focus(int control) override;

  private:
    template <class C>
    C at(int control) const {
        return C(GetDlgItem(dialog_, control));
    }

    HWND dialog_ = nullptr;
};

// Any modal dialog that is nothing but a form, with or without lists.
class FormDialog : public Dialog {
  public:
    FormDialog(Form& form, Prompts& prompts);

  protected:
    // Before the window is made. A change of the list counts as an entry.
    void addList(EditList& list, int control, const ListMenu& menu);

    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

    DialogControls& controls() { return controls_; }
    FormExchange& exchange() { return exchange_; }
    EditListViews& lists() { return lists_; }

  private:
    Form& form_;
    Prompts& prompts_;
    DialogControls controls_;
    FormExchange exchange_;
    EditListViews lists_;
};

// Shows forms as modal dialogs.
class WindowFormRunner : public FormRunner {
  public:
    // Shows a form; what Dialog::showModal returns.
    using Window = std::function<int(Form&, Prompts&)>;

    explicit WindowFormRunner(Prompts& prompts) : prompts_(prompts) {}
    // The forms of this resource have a window of their own.
    void useFor(int dialog, Window window) { windows_[dialog] = std::move(window); }
    bool run(Form& form) override;

  private:
    Prompts& prompts_;
    std::map<int, Window> windows_;
};

}  // namespace korvane
