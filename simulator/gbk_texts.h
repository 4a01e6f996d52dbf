#pragma once

#include <string_view>

// The names of the sample configuration in GBK, as records carry them.

namespace korvane::gbk {

inline constexpr std::string_view networkName =  // 示范城市移动多媒体广播网
    "\xCA\xBE\xB7\xB6\xB3\xC7\xCA\xD0\xD2\xC6\xB6\xAF"
    "\xB6\xE0\xC3\xBD\xCC\xE5\xB9\xE3\xB2\xA5\xCD\xF8";
inline constexpr std::string_view provider = "\xC4\xDA\xB2\xBF\xC9\xFA\xB3\xC9";  // 内部生成
inline constexpr std::string_view news =
    "\xD0\xC2\xCE\xC5\xD7\xDB\xBA\xCF\xC6\xB5\xB5\xC0";  // 新闻综合频道
inline constexpr std::string_view sports = "\xCC\xE5\xD3\xFD\xC6\xB5\xB5\xC0";    // 体育频道
inline constexpr std::string_view movies = "\xD3\xB0\xCA\xD3\xC6\xB5\xB5\xC0";    // 影视频道
inline constexpr std::string_view children = "\xC9\xD9\xB6\xF9\xC6\xB5\xB5\xC0";  // 少儿频道
inline constexpr std::string_view cinema = "\xB5\xE3\xB2\xA5\xD3\xB0\xD4\xBA";    // 点播影院
inline constexpr std::string_view opera =
    "\xCF\xB7\xC7\xFA\xCB\xAB\xD3\xEF\xC6\xB5\xB5\xC0";  // 戏曲双语频道
inline constexpr std::string_view musicRadio = "\xD2\xF4\xC0\xD6\xB9\xE3\xB2\xA5";  // 音乐广播
inline constexpr std::string_view trafficRadio = "\xBD\xBB\xCD\xA8\xB9\xE3\xB2\xA5";  // 交通广播
inline constexpr std::string_view newsRadio = "\xD0\xC2\xCE\xC5\xB9\xE3\xB2\xA5";  // 新闻广播
inline constexpr std::string_view cityInfo = "\xB3\xC7\xCA\xD0\xD7\xCA\xD1\xB6";   // 城市资讯
inline constexpr std::string_view guide =
    "\xB5\xE7\xD7\xD3\xD2\xB5\xCE\xF1\xD6\xB8\xC4\xCF";  // 电子业务指南
inline constexpr std::string_view entitlements = "\xCA\xDA\xC8\xA8\xB9\xDC\xC0\xED";  // 授权管理

}  // namespace korvane::gbk
