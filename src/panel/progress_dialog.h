#pragma once

#include <memory>

#include "device/transfer_runner.h"
#include "panel/window_progress_sink.h"
#include "ui/dialog.h"

namespace korvane {

// Shows how far a transfer is, and nothing else can be done until it reports its outcome: a
// transfer cannot be taken back half-way.
class ProgressDialog : public Dialog {
  public:
    // Messages from the sink: wParam is the percentage, or the code of the failure.
    static constexpr UINT progressMessage = 1000;
    static constexpr UINT failureMessage = 1001;

    // `start` is called once the dialog's window is there; when it fails, the dialog ends at once.
    // `send` is what the sink sends with.
    explicit ProgressDialog(TransferRunner::Start start,
                            WindowProgressSink::Send send = &SendNotifyMessageW);
    ~ProgressDialog() override;

    // 0, or the code of the failure.
    int run() { return showModal(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onDestroy() override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void showProgress(int percent);

    TransferRunner::Start start_;
    std::shared_ptr<WindowProgressSink> sink_;
};

// Runs transfers behind the progress dialog.
class ModalTransferRunner : public TransferRunner {
  public:
    int run(const Start& start) override { return ProgressDialog(start).run(); }
};

}  // namespace korvane
