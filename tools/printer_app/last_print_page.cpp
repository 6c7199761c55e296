#include "tools/printer_app/last_print_page.h"

#include <array>
#include <fstream>
#include <vector>

#include "tools/printer_app/application.h"
#include "tools/printer_app/guarded.h"
#include "tools/printer_app/last_print.h"

namespace vrk::tool {
namespace {

std::string path_of(pappl_printer_t* printer, const char* name) {
  std::array<char, 1024> path{};
  return papplPrinterGetPath(printer, name, path.data(), path.size());
}

std::string text(const tree& facts, const char* name) {
  const tree value = facts.value(name, tree());
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// All text goes through papplClientHTMLPrintf, which escapes what stands for %s.
void show_coverage(pappl_client_t* client, const tree& facts) {
  papplClientHTMLPuts(client, "<h2>Ink Coverage</h2><table class=\"list\"><tbody>");
  for (const tree& plane : facts.value("planes", tree::array())) {
    papplClientHTMLPrintf(client, "<tr><th>%s</th><td>%.2f %%</td></tr>\n", text(plane, "ink").c_str(),
                          plane.value("coverage", 0.0) * 100);
  }
  papplClientHTMLPuts(client, "</tbody></table>\n");
}

void show_tables(pappl_client_t* client, const tree& facts) {
  papplClientHTMLPuts(client, "<h2>Tables</h2>\n");
  for (const tree& table : facts.value("tables", tree::array())) {
    papplClientHTMLPrintf(client, "<h3>%s: %s</h3><pre>%s</pre>\n", text(table, "role").c_str(),
                          text(table, "name").c_str(), text(table, "holds").c_str());
  }
}

void show_picture(pappl_client_t* client, const std::string& path, const tree& facts, const char* what) {
  papplClientHTMLPrintf(client, "<h2>%s</h2><p><img src=\"%s?%s-%s\" alt=\"%s\" style=\"max-width: 100%%\"></p>\n",
                        what, path.c_str(), text(facts, "job").c_str(), text(facts, "page").c_str(), what);
}

void show(pappl_client_t* client, pappl_printer_t* printer) {
  const tree facts = facts_of_last_print(last_print_directory(printer));
  papplClientHTMLPrinterHeader(client, printer, "Last Print", 0, nullptr, nullptr);
  papplClientHTMLPuts(client, "<div class=\"row\"><div class=\"col-12\">\n");
  if (!facts.is_object()) {
    papplClientHTMLPuts(client, "<p>Nothing has been printed yet.</p>\n");
  } else {
    papplClientHTMLPrintf(client, "<p>Job %s, %s, page %s: %s x %s pixels at %s dpi, printed %s.</p>\n",
                          text(facts, "job").c_str(), text(facts, "name").c_str(), text(facts, "page").c_str(),
                          text(facts, "width").c_str(), text(facts, "height").c_str(), text(facts, "dpi").c_str(),
                          text(facts, "printed").c_str());
    show_picture(client, path_of(printer, "last/preview.png"), facts, "Preview");
    show_picture(client, path_of(printer, "last/detail.png"), facts, "Single Dots");
    show_coverage(client, facts);
    show_tables(client, facts);
  }
  papplClientHTMLPuts(client, "</div></div>\n");
  papplClientHTMLPrinterFooter(client);
}

// Other people's pages are to be seen by who may change the printer.
bool answer_page(pappl_client_t* client, void* printer) {
  if (!papplClientHTMLAuthorize(client)) return true;
  return complaint_of([&] { show(client, static_cast<pappl_printer_t*>(printer)); }).empty();
}

bool send_picture(pappl_client_t* client, pappl_printer_t* printer, const char* name) {
  if (!papplClientHTMLAuthorize(client)) return true;
  std::ifstream file(last_print_directory(printer) / name, std::ios::binary);
  if (!file) return papplClientRespond(client, HTTP_STATUS_NOT_FOUND, nullptr, nullptr, 0, 0);
  if (!papplClientRespond(client, HTTP_STATUS_OK, nullptr, "image/png", 0, 0)) return false;
  http_t* const to = papplClientGetHTTP(client);
  std::array<char, 1 << 14> part;
  while (file.read(part.data(), std::streamsize(part.size())), file.gcount() != 0) {
    if (httpWrite2(to, part.data(), std::size_t(file.gcount())) < 0) return false;
  }
  return httpWrite2(to, "", 0) >= 0;
}

template <const char* const& name>
bool answer_picture(pappl_client_t* client, void* printer) {
  bool done = false;
  const std::string why =
      complaint_of([&] { done = send_picture(client, static_cast<pappl_printer_t*>(printer), name); });
  return why.empty() && done;
}

constexpr const char *preview_name = "preview.png", *detail_name = "detail.png";

}  // namespace

void add_last_print_page(pappl_printer_t* printer, void*) {
  pappl_system_t* const system = papplPrinterGetSystem(printer);
  const auto add = [&](const char* name, const char* format, pappl_resource_cb_t answer) {
    papplSystemAddResourceCallback(system, path_of(printer, name).c_str(), format, answer, printer);
  };
  add("last", "text/html", answer_page);
  add("last/preview.png", "image/png", answer_picture<preview_name>);
  add("last/detail.png", "image/png", answer_picture<detail_name>);
  papplPrinterAddLink(printer, "Last Print", path_of(printer, "last").c_str(),
                      PAPPL_LOPTIONS_NAVIGATION | PAPPL_LOPTIONS_STATUS);
}

}  // namespace vrk::tool
