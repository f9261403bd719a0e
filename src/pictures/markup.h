// Texts and numbers as XML and HTML take them.
#pragma once

#include <string>
#include <string_view>

namespace merivane::pictures {

// Windows-1252 as UTF-8 in which nothing is markup, for content and attributes in double quotes.
// Line ends stay; a control character that XML refuses becomes U+FFFD.
std::string Escaped(std::string_view text);

// With at most two decimals: "12", "12.5".
std::string Number(double value);

}  // namespace merivane::pictures
