#include "output/pictures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <set>

#include "document/page.h"
#include "document/page_items.h"
#include "document/paper.h"
#include "editing/selection.h"
#include "output/page_output.h"
#include "output/pdf.h"
#include "output/pdf_fonts.h"
#include "output/svg.h"
#include "output/type1_font.h"
#include "platform/clipboard.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {

PictureChoice LastPictureChoice;

namespace {

constexpr float kPointsPerInch = 72;
constexpr float kMargin = 1;  // round a selection, points
// What the pixels of a picture may take. A4 at 1200 dots per inch is a little over half of it.
constexpr double kMostBytes = 1 << 30;
constexpr double kBytesPerPixel = 4;

// What a picture shows.
struct Motif {
  std::unique_ptr<PageItems> items;
  Box area;  // points
};

Page SelectedPart() {
  const SelectedItems selected = Selection();
  Page page;
  for (const TextItem* item : selected.texts) page.text.append(item->line).append("\r\n");
  for (const DrawingItem* item : selected.drawings) page.drawings.append(item->record).append("\r\n");
  page.drawingCount = static_cast<std::int16_t>(selected.drawings.size());
  return page;
}

Box AreaOf(bool selection) {
  if (!selection) return WholeSheet();
  const Box ink = BoxOf(Selection());
  return {ink.left - kMargin, ink.top - kMargin, ink.right + kMargin, ink.bottom + kMargin};
}

Motif MotifOf(bool selection) {
  return {std::make_unique<PageItems>(selection ? SelectedPart() : ThePage), AreaOf(selection)};
}

int PixelsOf(float points, int resolution) {
  constexpr double kMost = 1 << 30;  // no picture is as large
  constexpr double kRounding = 1e-3;
  const double pixels = static_cast<double>(points) * resolution / kPointsPerInch;
  return static_cast<int>(std::clamp(std::ceil(pixels - kRounding), 1.0, kMost));
}

double BytesAt(const Box& area, int resolution) {
  const double dots = resolution / static_cast<double>(kPointsPerInch);
  return (area.right - area.left) * dots * (area.bottom - area.top) * dots * kBytesPerPixel;
}

}  // namespace

std::string PngOf(const PageItems& items, const Box& area, int resolution, bool transparent,
                  std::string* missing) {
  const int width = PixelsOf(area.right - area.left, resolution);
  const int height = PixelsOf(area.bottom - area.top, resolution);
  const float scale = static_cast<float>(resolution) / kPointsPerInch;
  const Box shown{area.left, area.top, area.left + static_cast<float>(width) / scale,
                  area.top + static_cast<float>(height) / scale};
  const std::unique_ptr<Image> image = TheToolkit->NewImage(width, height, shown, 1, transparent);
  PaintPage(*image, PrintedView(shown, scale, !transparent), items, shown);
  std::set<std::int16_t> faces;
  for (const ScreenFace& face : image->MissingFaces()) faces.insert(TypefaceOf(face));
  if (missing) *missing = MissingFonts(faces);
  return image->Png(resolution);
}

void ResetPictures() {
  LastPictureChoice = {};
}

PictureSize SizeOfPicture(const PictureChoice& choice) {
  const Box area = AreaOf(choice.selection);
  return {PixelsOf(area.right - area.left, choice.resolution),
          PixelsOf(area.bottom - area.top, choice.resolution)};
}

std::string RefusalOfPicture(const PictureChoice& choice) {
  if (choice.selection && !AnythingSelected()) return "Nothing is selected";
  if (choice.svg) return {};
  if (choice.resolution < kLeastResolution || choice.resolution > kMostResolution)
    return "A resolution from 72 to 1200 is needed";
  const Box area = AreaOf(choice.selection);
  if (BytesAt(area, choice.resolution) <= kMostBytes) return {};
  const auto possible =
      static_cast<int>(std::sqrt(kMostBytes / BytesAt(area, choice.resolution)) * choice.resolution);
  if (possible < kLeastResolution) return "Too large for a PNG: export it as SVG";
  return "Too large: at most " + std::to_string(possible) + " for this size";
}

std::string ExportPicture(const PictureChoice& choice) {
  if (const std::string refusal = RefusalOfPicture(choice); !refusal.empty()) throw Failure(refusal + ".");
  // An SVG has no resolution, whatever stands in its box.
  const int resolution = choice.svg ? LastPictureChoice.resolution : choice.resolution;
  LastPictureChoice = choice;
  LastPictureChoice.resolution = resolution;
  const std::string path =
      ChooseOutput("Export Picture", "-" + std::to_string(CurrentPageNumber), choice.svg ? "svg" : "png");
  if (path.empty()) return {};
  KeepPages(path, CurrentPaperFile, {CurrentPageNumber});
  const Motif motif = MotifOf(choice.selection);
  std::string missing;
  WriteFileSafely(
      path, choice.svg ? SvgOf(*motif.items, motif.area, !choice.transparent, &missing)
                       : PngOf(*motif.items, motif.area, choice.resolution, choice.transparent, &missing));
  if (!missing.empty()) TheDialogs->Message(missing);
  return path;
}

std::string CopyAsPicture() {
  PictureChoice choice = LastPictureChoice;
  choice.selection = AnythingSelected();
  choice.svg = false;
  const Motif motif = MotifOf(choice.selection);
  std::string missing;
  // Where it would be too large as points, it is on the clipboard as lines and text.
  std::vector<Clipboard::Form> forms = {{"image/svg+xml", SvgOf(*motif.items, motif.area, false, &missing)},
                                        {"application/pdf", PdfOf(*motif.items, motif.area)}};
  if (RefusalOfPicture(choice).empty())
    forms.push_back({"image/png", PngOf(*motif.items, motif.area, choice.resolution, choice.transparent)});
  TheClipboard->PutForms(forms);
  if (!missing.empty()) TheDialogs->Message(missing);
  return choice.selection ? "selection" : "page";
}

}  // namespace kelvane
