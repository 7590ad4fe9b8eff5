#include "output/pdf.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "document/pdf_pages.h"
#include "output/bookmarks.h"
#include "output/pdf_file.h"
#include "output/pdf_fonts.h"
#include "output/vector_painter.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

bool IsPlace(Point point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

// A page's content. Points have their y upwards there.
class PdfPainter final : public VectorPainter {
 public:
  PdfPainter(PdfFonts& fonts, const Box& area) : fonts_(fonts), area_(area), content_("1 J 1 j\n") {}

  // The content, complete.
  std::string Finish() {
    EndText();
    return std::move(content_);
  }

  void FillBox(const Box& box, ColourValue colour) override {
    Path path;
    path.MoveTo({box.left, box.top});
    for (const Point corner : {Point{box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}})
      path.LineTo(corner);
    FillPath(path, colour);
  }

  void StrokePath(const Path& path, const Pen& pen) override {
    if (!AddPath(path, pen.colour, [&] { SetWidth(pen.width); })) return;
    content_ += "S\n";
  }

  void FillPath(const Path& path, ColourValue colour) override {
    if (AddPath(path, colour, [] {})) content_ += "f\n";
  }

  void SayTogether(std::string_view text) override {
    EndString();
    if (text.empty()) {
      if (saying_) content_ += "EMC\n";
      saying_ = false;
      return;
    }
    BeginText();
    content_ += "/Span<</ActualText" + PdfText(text) + ">>BDC\n";
    saying_ = true;
  }

 private:
  template <typename Prepare>
  bool AddPath(const Path& path, ColourValue colour, Prepare prepare) {
    if (path.Empty() || !std::ranges::all_of(path.points, IsPlace)) return false;
    EndText();
    SetColour(colour);
    prepare();
    AppendPdfPath(content_, path, [this](Point point) { return Place(point); });
    return true;
  }

  Point Place(Point point) const { return {point.x - area_.left, area_.bottom - point.y}; }

  // For lines and areas alike: the shapes of fonts have both. Greys are set as such, so that a printer makes
  // them of black ink alone.
  void SetColour(ColourValue colour) {
    if (colour == colour_) return;
    colour_ = colour;
    const auto component = [colour](int shift) { return PdfNumber((colour >> shift & 0xFF) / 255.0) + " "; };
    const std::string red = component(0), green = component(8), blue = component(16);
    if (red == green && green == blue) {
      content_ += red + "g " + red + "G\n";
    } else {
      content_ += red + green + blue + "rg " + red + green + blue + "RG\n";
    }
  }

  void SetWidth(float width) {
    if (width == width_) return;
    width_ = width;
    content_ += PdfNumber(width) + " w\n";
  }

  void BeginText() {
    if (inText_) return;
    content_ += "BT\n";
    inText_ = true;
    font_.clear();
  }

  void EndText() {
    if (!inText_) return;
    EndString();
    content_ += "ET\n";
    inText_ = false;
  }

  // Characters that follow each other on one line go into one string, with steps where a place is not the one
  // that the widths lead to.
  void Show(const GlyphOnPage& glyph) override {
    if (!(glyph.em > 0) || !std::isfinite(glyph.em) || !IsPlace(glyph.origin)) return;
    if (!fonts_.Use(glyph.font, glyph.code)) return;
    BeginText();
    const Point at = Place(glyph.origin);
    const double step = (at.x - pen_) * 1000 / glyph.em;
    const bool goesOn = !string_.empty() && glyph.font == typeface_ && glyph.em == em_ && at.y == line_ &&
                        glyph.colour == colour_ && std::abs(step) < kMostStep;
    if (!goesOn) {
      BeginString(glyph, at);
    } else if (std::abs(at.x - pen_) > kLeastStep) {
      const std::string number = PdfNumber(-step);
      string_ += ")" + number + "(";
      pen_ = at.x;
    }
    AppendCode(glyph.code);
    pen_ += PdfFonts::WidthOf(glyph.font, glyph.code) * glyph.em;
  }

  void BeginString(const GlyphOnPage& glyph, Point at) {
    EndString();
    SetColour(glyph.colour);
    typeface_ = glyph.font;
    em_ = glyph.em;
    const std::string font = "/" + PdfFonts::NameOf(typeface_) + " " + PdfNumber(em_) + " Tf\n";
    if (font != font_) content_ += font;
    font_ = font;
    content_ += "1 0 " + PdfNumber(typeface_ == kSymbolItalic ? kSlant : 0) + " 1 " + PdfNumber(at.x) + " " +
                PdfNumber(at.y) + " Tm\n";
    line_ = at.y;
    pen_ = at.x;
    string_ = "[(";
  }

  void EndString() {
    if (string_.empty()) return;
    content_ += string_ + ")]TJ\n";
    string_.clear();
  }

  void AppendCode(int code) {
    if (code == '(' || code == ')' || code == '\\') string_ += '\\';
    if (code >= 32) {
      string_ += static_cast<char>(code);
    } else {
      string_ += {'\\', static_cast<char>('0' + (code >> 6)), static_cast<char>('0' + (code >> 3 & 7)),
                  static_cast<char>('0' + (code & 7))};
    }
  }

  static constexpr double kMostStep = 10000;   // thousandths of an em
  static constexpr double kLeastStep = 0.002;  // points

  PdfFonts& fonts_;
  const Box area_;
  std::string content_;
  ColourValue colour_ = 0;
  float width_ = 1;
  bool inText_ = false;
  bool saying_ = false;
  std::string font_;    // in force, as it was set
  std::string string_;  // being made
  std::int16_t typeface_ = 0;
  float em_ = 0;
  float line_ = 0;
  double pen_ = 0;  // where the next character would stand
};

}  // namespace

class PdfDocument::Writer {
 public:
  Writer(std::function<void(std::string_view)> take, Options options)
      : file_(std::move(take)),
        options_(std::move(options)),
        pagesObject_(file_.Reserve()),
        resources_(file_.Reserve()) {}

  void AddPage(const PageItems& items, const Box& area, int number, std::string_view attached) {
    PdfPainter painter(fonts_, area);
    PaintPage(painter, PrintedView(area, 1, false), items, area);
    const int content = file_.WriteStream("", painter.Finish());
    const std::string box =
        "[0 0 " + PdfNumber(area.right - area.left) + " " + PdfNumber(area.bottom - area.top) + "]";
    pages_.push_back({file_.Write("<</Type/Page/Parent " + PdfReference(pagesObject_) + "/MediaBox" + box +
                                  "/CropBox" + box + "/Resources " + PdfReference(resources_) + "/Contents " +
                                  PdfReference(content) + ">>"),
                      number, 0});
    if (!attached.empty()) Attach(attached);
    if (options_.bookmarks) bookmarks_.AddPage(items, pages_.back().object, area);
  }

  std::string Finish() {
    const std::string missing = fonts_.Write(file_, resources_);
    std::string kids;
    for (const WrittenPage& page : pages_) kids += PdfReference(page.object) + "\n";
    file_.Write(pagesObject_,
                "<</Type/Pages/Count " + std::to_string(pages_.size()) + "/Kids[" + kids + "]>>");
    const std::string outlines = bookmarks_.Write(file_);
    const int catalog =
        file_.Write("<</Type/Catalog/Pages " + PdfReference(pagesObject_) + Labels() + Attachments() +
                    outlines + "/ViewerPreferences<</DisplayDocTitle true>>>>");
    const int information =
        file_.Write("<</Title" + PdfText(options_.title) + "/Creator(Kelvane)/Producer(Kelvane)>>");
    file_.Finish(catalog, information);
    return missing;
  }

 private:
  struct WrittenPage {
    int object = 0;
    int number = 0;
    int attached = 0;  // object of what names the attachment; 0 without one
  };

  void Attach(std::string_view content) {
    WrittenPage& page = pages_.back();
    const std::string digits = std::to_string(1000 + page.number).substr(1);
    const int stream = file_.WriteStream(kAttachedPage + std::to_string(page.number) + "/Params<</Size " +
                                             std::to_string(content.size()) + ">>",
                                         content);
    page.attached =
        file_.Write("<</Type/Filespec/F(page." + digits + ")/UF" + PdfText(NameOfAttached(page.number)) +
                    "/AFRelationship/Source/EF<</F " + PdfReference(stream) + ">>>>");
  }

  std::string NameOfAttached(int number) const {
    const std::string digits = std::to_string(1000 + number).substr(1);
    return (options_.title.empty() ? "page" : options_.title) + "." + digits;
  }

  // The numbers that pages have, which need not follow each other.
  std::string Labels() const {
    std::string labels;
    for (std::size_t i = 0; i < pages_.size(); ++i) {
      if (i > 0 && pages_[i].number == pages_[i - 1].number + 1) continue;
      labels += std::to_string(i) + "<</S/D/St " + std::to_string(pages_[i].number) + ">>";
    }
    return "/PageLabels<</Nums[" + labels + "]>>";
  }

  std::string Attachments() const {
    std::string names;
    for (const WrittenPage& page : pages_) {
      if (page.attached != 0)
        names += PdfText(NameOfAttached(page.number)) + PdfReference(page.attached) + "\n";
    }
    return names.empty() ? names : "/Names<</EmbeddedFiles<</Names[" + names + "]>>>>";
  }

  PdfFile file_;
  Options options_;
  PdfFonts fonts_;
  Bookmarks bookmarks_;
  int pagesObject_;
  int resources_;
  std::vector<WrittenPage> pages_;
};

PdfDocument::PdfDocument(std::function<void(std::string_view)> take, Options options)
    : writer_(std::make_unique<Writer>(std::move(take), std::move(options))) {}

PdfDocument::~PdfDocument() = default;

void PdfDocument::AddPage(const PageItems& items, const Box& area, int number, std::string_view attached) {
  writer_->AddPage(items, area, number, attached);
}

std::string PdfDocument::Finish() {
  return writer_->Finish();
}

std::string PdfOf(const PageItems& items, const Box& area) {
  std::string whole;
  PdfDocument document([&](std::string_view bytes) { whole += bytes; }, {});
  document.AddPage(items, area, 1, {});
  document.Finish();
  return whole;
}

}  // namespace kelvane
