// Writes the parameters that print_page reads, and that a driver would ship, to the current folder.
#include <fstream>
#include <string>

#include "kit/blob.h"
#include "kit/presets.h"

namespace {

using vrk::kit::bytes;

void write(const std::string& name, const bytes& image) {
  std::ofstream(name, std::ios::binary)
      .write(reinterpret_cast<const char*>(image.data()), std::streamsize(image.size()));
}

bytes blob_of_one(const char* type, const char* tag, const bytes& image) {
  vrk::kit::blob blob;
  blob.type = type;
  blob.entries = {{.tag = tag, .data = image}};
  return blob.encode();
}

}  // namespace

int main() {
  write("ink.blob", blob_of_one("CS2T", "HN", vrk::kit::ink_table(4).encode()));
  write("halftone.blob", blob_of_one("HATT", "HH4", vrk::kit::ed_parameters(4, 2).encode()));
  write("spread.edtb", vrk::kit::ed_distribution().encode());
}
