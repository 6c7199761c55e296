#include "tools/printer_app/style.h"

namespace vrk::tool {
namespace {

// The classes are those that PAPPL writes into its pages.
constexpr const char* style = R"(
body { margin: 0; font: 16px/1.5 system-ui, sans-serif; color: #222; background: #fff; overflow-wrap: anywhere; }
img { max-width: 100%; height: auto; }
.content p > img:not([class]) { border: 1px solid #ccc; box-sizing: border-box; }
pre, code { font: 13px/1.4 ui-monospace, monospace; white-space: pre-wrap; }
a { color: #06c; }
h1, h2, h3 { line-height: 1.25; margin: 24px 0 8px; }
h1 { font-size: 24px; } h2 { font-size: 19px; } h3 { font-size: 16px; }
.title { border-bottom: 1px solid #ccc; padding-bottom: 4px; }
.title a:not(.btn) { color: inherit; text-decoration: none; }

.row { display: flex; flex-wrap: wrap; margin: 0 auto; max-width: 1200px; }
[class^="col-"] { box-sizing: border-box; flex: 1 1 100%; min-width: 0; padding: 0 16px; }
.row .row [class^="col-"] { padding: 0; }
.header { background: #123; } .header2 { background: #234; }
.nav { color: #cde; line-height: 40px; }
.nav .btn { color: #cde; margin-right: 16px; text-decoration: none; white-space: nowrap; }
.nav .btn:hover, .nav .active { color: #fff; }
.nav .active { font-weight: bold; margin-right: 16px; white-space: nowrap; }
.nav img { height: 24px; vertical-align: middle; }
.content { padding: 8px 0 32px; }
.footer { border-top: 1px solid #ccc; color: #666; font-size: 13px; padding: 8px 0; }
.banner { background: #fec; border-radius: 4px; padding: 8px 12px; }

form { display: inline-block; max-width: 100%; }
.content .btn a.btn, .content a.btn, button, input[type=submit] {
  background: #234; border: 0; border-radius: 4px; color: #fff; cursor: pointer; display: inline-block;
  font: 14px/1.4 system-ui, sans-serif; margin: 2px 0; padding: 5px 10px; text-decoration: none; }
.content a.btn:hover, button:hover, input[type=submit]:hover { background: #456; }
input[type=text], input[type=password], input[type=number], input[type=email], input[type=tel], select, textarea {
  box-sizing: border-box; border: 1px solid #999; border-radius: 4px; background: #fff; color: #222;
  font: inherit; max-width: 100%; padding: 3px 8px; }
input[type=text], textarea { width: 24em; }
input[type=number] { width: 6em; }
label.image input { position: absolute; opacity: 0; }
label.image img { border: 2px solid transparent; border-radius: 4px; vertical-align: middle; }
label.image input:checked + img { border-color: #06c; }
label.image input:focus-visible + img { outline: 2px solid #06c; }
img.idle, img.processing, img.stopped { border-left: 6px solid #3a3; float: left; margin-right: 12px; width: 64px; }
img.processing { border-color: #06c; } img.stopped { border-color: #c33; }

table { border-collapse: collapse; max-width: 100%; }
table.form th { font-weight: normal; padding: 6px 12px 6px 0; text-align: left; vertical-align: top; width: 50%; }
table.form td { padding: 6px 0; vertical-align: top; }
table.list { width: 100%; }
table.list th, table.list td { border-bottom: 1px solid #ddd; padding: 4px 8px; text-align: left; }
table.meter { width: 100%; } table.meter th { text-align: left; width: 20%; }
span.bar { display: inline-block; height: 14px; padding: 0; }
@media (min-width: 800px) { .col-6 { flex: 1 1 50%; } .col-4 { flex: 1 1 33%; } .col-3 { flex: 1 1 25%; } }
@media (max-width: 600px) {
  table.form, table.form tbody, table.form tr, table.form th, table.form td { display: block; width: auto; }
  table.form th { padding: 12px 0 2px; }
  table.form td { padding: 0; }
  table.list { display: block; font-size: 14px; overflow-x: auto; overflow-wrap: normal; }
}
)";

}  // namespace

void add_style(pappl_system_t* system) { papplSystemAddResourceString(system, "/style.css", "text/css", style); }

}  // namespace vrk::tool
