// Pictures in memory, on a canvas, in files and on the clipboard, and sheets of a printer.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTimer>
#include <QToolBar>

#include "document/page.h"
#include "output/pdf.h"
#include "output/postscript.h"
#include "platform/failure.h"
#include "platform/qt/qt_clipboard.h"
#include "platform/qt/qt_print_painter.h"
#include "platform/qt/qt_printer.h"
#include "tests/screen/ink.h"
#include "tests/screen/program_on_disk.h"
#include "tests/screen/screen_test.h"
#include "tests/support/ghostscript.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr int kDots = 144;
constexpr float kScale = kDots / 72.0F;

class PictureTest : public ScreenTest {
 protected:
  PictureTest() { StartFromDisk(); }

  static std::string SamplePage() { return ProgramFolder + "FIELDS.001"; }
  static PageItems ItemsOf(const std::string& page) {
    return PageItems(PageOfContent(TheFiles->ReadWhole(page), page));
  }
  std::unique_ptr<Image> PictureOfSample(bool transparent) {
    const PageItems items = ItemsOf(SamplePage());
    const Box paper = WholeSheet();
    auto image = toolkit.NewImage(static_cast<int>(PaperWidth * kScale),
                                  static_cast<int>(PaperHeight * kScale), paper, 1, transparent);
    PaintPage(*image, PrintedView(paper, kScale, !transparent), items, paper);
    return image;
  }
  // Reduced from a finer one, so that its edges are as smooth as those of the program.
  QImage Printed(const std::string& job) const {
    EXPECT_EQ(Ghostscript(job, "-sDEVICE=png16m -r576 -dDownScaleFactor=4 -o " + folder_.FileOf("sheet.png")),
              "");
    return QImage(QString::fromStdString(folder_.FileOf("sheet.png"))).convertToFormat(QImage::Format_RGB32);
  }

  // Whether every dark pixel of one has ink of the other within a pixel.
  static bool LiesOn(const QImage& one, const QImage& other) {
    int dark = 0;
    for (int y = 1; y < one.height() - 1; ++y) {
      for (int x = 1; x < one.width() - 1; ++x) {
        if (qGreen(one.pixel(x, y)) > 100) continue;
        ++dark;
        bool near = false;
        for (int i = 0; i < 9 && !near; ++i) near = HasInk(other.pixel(x + i % 3 - 1, y + i / 3 - 1));
        if (near) continue;
        ADD_FAILURE() << "no ink at " << x << " " << y;
        return false;
      }
    }
    EXPECT_GT(dark, 5000);
    return true;
  }

  const TestFolder folder_{"pictures"};
};

TEST_F(PictureTest, PngIsThePrintedPage) {
  const std::string png = PictureOfSample(false)->Png(kDots);
  const QImage picture = QImage::fromData(QByteArray::fromStdString(png), "PNG");
  EXPECT_EQ(picture.size(), QSize(1188, 1680));
  EXPECT_NEAR(picture.dotsPerMeterX() * 0.0254, kDots, 0.1);
  EXPECT_FALSE(picture.hasAlphaChannel());
  const QImage shown = picture.convertToFormat(QImage::Format_RGB32);
  const QImage printed = Printed(OnePageJob(SamplePage()));
  EXPECT_TRUE(LiesOn(shown, printed));
  EXPECT_TRUE(LiesOn(printed, shown));

  // On nothing: what is not black is see-through, and on white the same picture comes of it.
  const QImage clear = QImage::fromData(QByteArray::fromStdString(PictureOfSample(true)->Png(kDots)), "PNG");
  EXPECT_TRUE(clear.hasAlphaChannel());
  EXPECT_EQ(qAlpha(clear.pixel(1, 1)), 0);
  QImage onWhite(clear.size(), QImage::Format_RGB32);
  onWhite.fill(Qt::white);
  QPainter(&onWhite).drawImage(0, 0, clear);
  EXPECT_TRUE(LiesOn(onWhite, shown));
  EXPECT_TRUE(LiesOn(shown, onWhite));
}

TEST_F(PictureTest, DocumentIsThePrintedPage) {
  // Every sign, every typeface, formulas, and lines and areas.
  for (const char* name : {"SPECIMEN.001", "EXAM.001", "FORMULAS.002", "DIAGRAM.001"}) {
    const std::string page = ProgramFolder + name;
    const QImage document = Printed(PdfOf(ItemsOf(page), WholeSheet()));
    const QImage printed = Printed(OnePageJob(page));
    EXPECT_TRUE(LiesOn(document, printed)) << name;
    EXPECT_TRUE(LiesOn(printed, document)) << name;
  }
}

TEST_F(PictureTest, PrintersSheetIsThePrintedPage) {
  const PageItems items = ItemsOf(SamplePage());
  const QImage printed = Printed(OnePageJob(SamplePage()));
  for (const bool embedsFonts : {true, false}) {
    const std::string path = folder_.FileOf("sheet.pdf");
    {
      QPrinter printer(QPrinter::HighResolution);
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(path));
      printer.setFullPage(true);
      printer.setPageSize(
          QPageSize(QSizeF(PaperWidth, PaperHeight), QPageSize::Point, {}, QPageSize::ExactMatch));
      QPainter painter(&printer);
      painter.scale(printer.resolution() / 72.0, printer.resolution() / 72.0);
      QtPrintPainter sheet(painter, embedsFonts);
      PaintPage(sheet, PrintedView(WholeSheet(), 1, false), items, WholeSheet());
    }
    const std::string document = DiskFiles().ReadWhole(BackslashPath(path));
    EXPECT_EQ(document.find("/FontFile") != std::string::npos, embedsFonts);
    const QImage sheet = Printed(document);
    EXPECT_TRUE(LiesOn(sheet, printed));
    EXPECT_TRUE(LiesOn(printed, sheet));
  }
}

PrintJob JobOf(int pages) {
  PrintJob job;
  job.title = "Essay";
  job.width = PaperWidth;
  job.height = PaperHeight;
  for (int page = 1; page <= pages; ++page) job.pages.push_back(page);
  return job;
}

// All sheets of the preview that is open.
QImage ShowSheets() {
  auto* const view = QApplication::activeModalWidget()->findChild<QGraphicsView*>();
  QImage shown(400, 400, QImage::Format_RGB32);
  QPainter painter(&shown);
  view->scene()->render(&painter);
  return shown;
}

TEST_F(PictureTest, PreviewReachesAllPages) {
  std::vector<int> painted;
  PrintJob job = JobOf(90);
  job.current = 60;
  job.paint = [&](int page, float, Painter&) { painted.push_back(page); };
  std::string shown;
  QTimer::singleShot(0, [&] {
    auto* const preview = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
    const auto look = [&] {
      painted.clear();
      ShowSheets();
      shown += std::to_string(painted.front()) + "-" + std::to_string(painted.back()) + " ";
    };
    const auto press = [&](const char* caption) {
      look();
      for (QAction* action : preview->findChild<QToolBar*>()->actions())
        if (action->text() == QLatin1String(caption) && action->isEnabled()) action->trigger();
    };
    press("Earlier Pages");
    press("Earlier Pages");
    press("Later Pages");
    look();
    shown += preview->windowTitle().toStdString();
    preview->close();
  });
  QtPrinter().Preview(job);
  EXPECT_EQ(shown, "51-90 11-50 1-40 41-80 Print Preview: Essay, pages 41 to 80");
  EXPECT_EQ(painted.size(), 40U);
}

TEST_F(PictureTest, PreviewShowsWhatItCanOfAPaper) {
  PrintJob job = JobOf(3);
  job.paint = [&](int page, float, Painter& sheet) {
    if (page == 2) throw Failure("Page 2 cannot be read.");
    sheet.FillBox({0, 0, PaperWidth, PaperHeight}, 0x0000FF);
  };
  int red = 0;
  QTimer::singleShot(0, [&] {
    const QImage shown = ShowSheets();
    for (int y = 0; y < shown.height(); ++y)
      for (int x = 0; x < shown.width(); ++x) red += shown.pixelColor(x, y) == Qt::red ? 1 : 0;
    ShowSheets();  // the message comes once
    QApplication::processEvents();
    QApplication::activeModalWidget()->close();
  });
  QtPrinter().Preview(job);
  EXPECT_GT(red, 0);
  EXPECT_EQ(dialogs.messages, std::vector<std::string>{"Page 2 cannot be read."});
}

TEST_F(PictureTest, CanvasShowsAPicturePixelByPixel) {
  auto* canvas = static_cast<QtCanvas*>(window->AddCanvas());
  window->SetCanvasPlace(canvas, {0, 0, 60, 40});
  canvas->SetCoordinates(10, 100, 60, 40);
  canvas->Clear();
  const auto picture = toolkit.NewImage(4, 3, {0, 0, 4, 3}, 1, false);
  picture->FillBox({1, 1, 2, 2}, 0x0000FF);
  canvas->DrawImage(*picture, {15, 110});
  const QImage shown = canvas->grab().toImage();
  const int ratio = static_cast<int>(canvas->PixelRatio());
  const auto at = [&](int x, int y) { return QColor(shown.pixel(5 * ratio + x, 10 * ratio + y)); };
  EXPECT_EQ(at(0, 0), QColor(Qt::white));
  EXPECT_EQ(at(1, 1), QColor(Qt::red));
  EXPECT_EQ(at(2, 1), QColor(Qt::white));
  EXPECT_EQ(at(4, 0), at(0, 3)) << "behind its edges the desk is seen";
  EXPECT_NE(at(4, 0), QColor(Qt::white));
  EXPECT_THROW(toolkit.NewImage(2000000, 2000000, {0, 0, 1, 1}, 1, false), Failure);
}

TEST_F(PictureTest, ClipboardHoldsAllForms) {
  QtClipboard clipboard;
  clipboard.Put("items", "text");
  clipboard.PutForms({{"image/svg+xml", "<svg/>"}, {"application/pdf", std::string("%PDF\0x", 6)}});
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(data->formats(), (QStringList{"image/svg+xml", "application/pdf"}));
  EXPECT_EQ(data->data("application/pdf").size(), 6);
  EXPECT_EQ(clipboard.Text() + clipboard.Items(), "");
}

}  // namespace
}  // namespace kelvane
