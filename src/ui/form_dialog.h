#pragma once

#include "forms/form.h"
#include "ui/dialog.h"

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
    Ipv4 address(int control) const override;
    void setAddress(int control, const Ipv4& address) override;
    void setEnabled(int control, bool enabled) override;
    void focus(int control) override;

  private:
    template <class C>
    C at(int control) const {
        return C(GetDlgItem(dialog_, control));
    }

    HWND dialog_ = nullptr;
};

// Any modal dialog that is nothing but a form.
class FormDialog : public Dialog {
  public:
    FormDialog(Form& form, Prompts& prompts);

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;

  private:
    Form& form_;
    DialogControls controls_;
    FormExchange exchange_;
};

// Shows forms as modal dialogs.
class WindowFormRunner : public FormRunner {
  public:
    explicit WindowFormRunner(Prompts& prompts) : prompts_(prompts) {}
    bool run(Form& form) override { return FormDialog(form, prompts_).showModal() == IDOK; }

  private:
    Prompts& prompts_;
};

}  // namespace korvane
