#include "runtime/TroubleShootLib/log_file_path.h"

#include <windows.h>

#include <cwchar>

namespace korvane {
namespace {

// One that exists is as good, and one that cannot be made shows when the file is opened.
void makeDirectory(const std::wstring& path) {
    CreateDirectoryW(path.c_str(), nullptr);
}

}  // namespace

std::wstring LogFilePath::forTime(const LogTime& now) {
    try {
        update(now);
        return file_;
    } catch (...) {
        return L"c:\\NOXExcep.log";
    }
}

void LogFilePath::forget() {
    root_.clear();
    yearDirectory_.clear();
    file_.clear();
}

void LogFilePath::update(const LogTime& now) {
    wchar_t text[32];
    if (root_.empty()) findRoot();
    if (yearDirectory_.empty() || now.year != year_) {
        std::swprintf(text, std::size(text), L"%04d", now.year);
        yearDirectory_ = root_ + tag_ + L"Log" + text;
        makeDirectory(yearDirectory_);
        year_ = now.year;
        file_.clear();  // 1 January of two years has the same name
    }
    if (file_.empty() || now.month != month_ || now.day != day_) {
        std::swprintf(text, std::size(text), L"\\%02d-%02d.log", now.month, now.day);
        file_ = yearDirectory_ + text;
        month_ = now.month;
        day_ = now.day;
    }
}

// Throws when the path has no directory.
void LogFilePath::findRoot() {
    const std::wstring path = environment_.executablePath();
    const std::size_t slash = path.rfind(L'\\');
    // Not a point in a directory's name: a program's own may have no extension.
    const std::size_t point = path.rfind(L'.');
    const std::size_t end = point == std::wstring::npos || point < slash ? path.size() : point;
    std::wstring tag = path.substr(slash, end - slash);
    std::wstring root = path.substr(0, slash) + L"\\LogFile";
    makeDirectory(root);
    tag_ = std::move(tag);
    root_ = std::move(root);
}

}  // namespace korvane
