#include <string_view>
#include <utility>

#include "page_text.h"
#include "pictures/style.h"

namespace merivane::pictures {

namespace {

constexpr const char* kBeforeDarkInks = R"(
:root { color-scheme: light dark; --paper: #ffffff; --text: #1f2933; --quiet: #5f6c7b;
  --line: #d9e2ec; --tint: #f5f7fa; --link: #2a6496; --error: #b3402a; --warning: #8a6100; }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 84rem; padding: 2rem 1.5rem 4rem; background: var(--paper);
  color: var(--text); font: 15px/1.5 'Segoe UI', 'Helvetica Neue', Arial, 'DejaVu Sans', sans-serif; }
h1 { font-size: 1.9rem; line-height: 1.2; margin: 0 0 .3rem; }
h2 { font-size: 1.3rem; margin: 0 0 .4rem; }
p { margin: .3rem 0 .8rem; max-width: 48rem; }
a { color: var(--link); }
.quiet { color: var(--quiet); }
section { margin-top: 2.6rem; padding-top: 1.2rem; border-top: 1px solid var(--line); }
nav ul { list-style: none; margin: 0; padding-left: 1.1rem; }
nav > ul { padding: 0; columns: 18rem; margin-top: 1rem; }
nav > ul > li { break-inside: avoid; }
figure { margin: .8rem 0; overflow-x: auto; }
figure svg { display: block; max-width: 100%; height: auto; }
figure a:hover .unit, figure a:focus .unit { stroke-width: 2.4; }
table { border-collapse: collapse; width: 100%; margin: .6rem 0; font-size: .9rem; }
th, td { text-align: left; vertical-align: top; padding: .35rem .7rem .35rem 0;
  border-bottom: 1px solid var(--line); overflow-wrap: anywhere; }
th { color: var(--quiet); font-weight: 600; white-space: nowrap; }
td { min-width: 6rem; }
td.wide { min-width: 14rem; }
td.narrow { min-width: 0; white-space: nowrap; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .35rem 1.2rem; max-width: 60rem; }
dt { color: var(--quiet); }
dd { margin: 0; }
.sheet { display: none; }
footer { margin-top: 2.6rem; padding-top: .8rem; border-top: 1px solid var(--line); }
.error { color: var(--error); font-weight: 600; }
.warning { color: var(--warning); font-weight: 600; }
summary { cursor: pointer; color: var(--link); }
pre { background: var(--tint); padding: .8rem; overflow-x: auto; white-space: pre-wrap; }
@media screen and (prefers-color-scheme: dark) {
  :root { --paper: #14191f; --text: #e4e9ee; --quiet: #9fb0c0; --line: #2c3742; --tint: #1b222a;
    --link: #7db7e8; --error: #ef8a75; --warning: #e0b04a; }
)";

constexpr const char* kBehindDarkInks = R"(}
@media screen and (max-width: 45rem) {
  body { padding: 1.2rem .9rem 3rem; }
  thead { display: none; }
  dl { grid-template-columns: 1fr; }
  dt { margin-top: .4rem; }
  table, tbody, tr, td { display: block; }
  tr { padding: .5rem 0; border-bottom: 1px solid var(--line); }
  td, td.wide { min-width: 0; padding: .05rem 0; border: 0; }
  td:empty { display: none; }
  td[data-of]::before { content: attr(data-of) ": "; color: var(--quiet); }
}
@media print {
  body { max-width: none; padding: 0; font-size: 10pt; }
  section { break-inside: auto; }
  h2, h2 + p { break-after: avoid; }
  h2, figure, tr { break-inside: avoid; }
  figure { overflow: visible; }
  .chart > svg { display: none; }
  .chart > svg.sheet { display: block; break-inside: avoid; margin-bottom: 1rem; }
  figure svg { min-width: 0 !important; }
  summary, nav { display: none; }
  details::details-content { content-visibility: visible; block-size: auto; }
  a { color: inherit; text-decoration: none; }
}
)";

std::string Rule(const std::string& selector, const Style& style) {
  std::string colours;
  for (const auto& [property, colour] :
       {std::pair{"fill", style.fill}, std::pair{"stroke", style.stroke}}) {
    if (std::string_view(colour) != "none") {
      colours += std::string(" ") + property + ": " + colour + ';';
    }
  }
  return "  " + selector + " {" + colours + " }\n";
}

}  // namespace

std::string ReportStyle() {
  std::string rules;
  for (int at = 0; at < static_cast<int>(Ink::kCount); ++at) {
    const Ink ink = static_cast<Ink>(at);
    const Style style = StyleOf(ink, Ground::kDark);
    rules += Rule(std::string("svg .") + style.name, style);
    rules += Rule(std::string("svg .faint .") + style.name, FaintStyleOf(ink, Ground::kDark));
  }
  return kBeforeDarkInks + rules + kBehindDarkInks;
}

}  // namespace merivane::pictures
