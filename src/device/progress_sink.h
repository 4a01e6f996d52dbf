#pragma once

namespace korvane {

// The seam that a transfer reports to, from its own thread. A transfer reports its outcome exactly
// once, as its last act: progress(100) or failed(code).
class ProgressSink {
  public:
    virtual ~ProgressSink() = default;

    // percent: 0-100; 100 means that the whole transfer succeeded.
    virtual void progress(int percent) = 0;

    // code: a non-zero result code of the device link (see DeviceClient) or of the transfer.
    virtual void failed(int code) = 0;
};

}  // namespace korvane
