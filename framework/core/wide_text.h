// Internal: conversion of wide command-line text to UTF-8.
//
// wchar_t is UTF-16 on Windows and UTF-32 on Linux; WideToUtf8 picks the
// matching decoder. Both decoders are exported (for the tests only) so that
// each can be tested on any platform. Nothing invalid is passed through: an
// unpaired surrogate, a surrogate value in UTF-32 and a value above U+10FFFF
// each become U+FFFD.
#pragma once

#include <string>
#include <string_view>

#include "orvane/export.h"

namespace Kf::Detail {

ORVANE_API std::string Utf16ToUtf8(std::u16string_view text);
ORVANE_API std::string Utf32ToUtf8(std::u32string_view text);
ORVANE_API std::string WideToUtf8(std::wstring_view text);

}  // namespace Kf::Detail
