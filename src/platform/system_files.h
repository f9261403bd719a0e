// Small files that the user or the system keeps for this program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace merivane::platform {

// The folder merivane in the user's configuration folder; empty where there is no such folder.
std::filesystem::path UserFolder();

// Lines of a text file in UTF-8 or, with a byte order mark, in UTF-16; nothing where it can't be
// read. The lines come in UTF-8, without their ends and without blanks or tabs around; empty ones
// are left out.
[[nodiscard]] std::optional<std::vector<std::string>> ReadSystemLines(
    const std::filesystem::path& file);

std::string_view Stripped(std::string_view text);  // without blanks and tabs around

enum class ByteOrder { kLowFirst, kHighFirst };

// UTF-8 of UTF-16 in bytes. Half a character becomes U+FFFD.
std::string Utf8OfUtf16(std::string_view bytes, ByteOrder order);

}  // namespace merivane::platform
