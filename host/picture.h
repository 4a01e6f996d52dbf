#pragma once

#include <windows.h>

#include <filesystem>

namespace korvane::host {

// Writes what a window of this process shows, frame included, as a PNG file; an existing file is
// replaced. Throws std::runtime_error when the picture cannot be taken or written.
void writePicture(HWND window, const std::filesystem::path& file);

}  // namespace korvane::host
