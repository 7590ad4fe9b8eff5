// width_tables <folder of AFM files> <data folder>
//
// Makes the width tables, the ink boxes and the leans of the text typefaces and puts the widths into QRX.PRO
// too.

#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "platform/failure.h"
#include "tools/width_tables.h"

namespace {

std::string ReadWhole(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream content;
  content << in.rdbuf();
  if (!in) throw kelvane::Failure("Cannot read " + path.string() + ".");
  return content.str();
}

void WriteWhole(const std::filesystem::path& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary);
  out << content;
  out.close();
  if (!out) throw kelvane::Failure("Cannot write " + path.string() + ".");
}

void Build(const std::filesystem::path& afmFolder, const std::filesystem::path& dataFolder) {
  std::array<kelvane::WidthTable, 12> tables;
  std::array<kelvane::InkTable, 12> inks;
  std::array<kelvane::LeanTable, 12> leans;
  for (std::size_t face = 0; face < tables.size(); ++face) {
    const kelvane::WidthTableSource& source = kelvane::kWidthTableSources[face];
    const std::string afm = ReadWhole(afmFolder / (std::string(source.afm) + ".afm"));
    tables[face] = kelvane::MakeWidthTable(afm, source.ownEncoding);
    const double slant = face == kelvane::kSlantedFace ? kelvane::kSlant : 0;
    inks[face] = kelvane::MakeInkTable(afm, source.ownEncoding, slant);
    leans[face] = kelvane::MakeLeanTable(afm, source.ownEncoding, slant);
    WriteWhole(dataFolder / (std::string(source.name) + ".WT"), kelvane::WidthTableBytes(tables[face]));
  }
  WriteWhole(dataFolder / "INK.TAB", kelvane::InkTableBytes(inks));
  WriteWhole(dataFolder / "LEAN.TAB", kelvane::LeanTableBytes(leans));
  const std::filesystem::path prolog = dataFolder / "QRX.PRO";
  WriteWhole(prolog, kelvane::ReplacePrologWidths(ReadWhole(prolog), tables));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: width_tables <folder of AFM files> <data folder>\n";
    return 2;
  }
  try {
    Build(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
