#include "tools/pictures/pictures.h"

#include "platform/files.h"
#include "tools/pictures/image_files.h"

namespace kelvane::pictures {

std::map<std::string, std::string> BuildPictures(const std::string& folder) {
  const std::string pointers = folder + "pointers.txt";
  const std::string about = folder + "about.txt";
  std::map<std::string, std::string> files = BuildPointers(TheFiles->ReadWhole(pointers), pointers);
  files["QRX.BMP"] = BitmapFile(BuildDrawing(TheFiles->ReadWhole(about), about));
  return files;
}

}  // namespace kelvane::pictures
