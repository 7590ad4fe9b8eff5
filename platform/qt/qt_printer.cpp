#include "platform/qt/qt_printer.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPageLayout>
#include <QPaintEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QPrintDialog>
#include <QPrintEngine>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QProgressDialog>
#include <QTemporaryFile>
#include <QToolBar>
#include <algorithm>
#include <exception>
#include <functional>
#include <utility>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/handlers.h"
#include "platform/memory.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_print_painter.h"
#include "platform/qt/qt_text.h"

namespace kelvane {
namespace {

constexpr double kPointsPerInch = 72;
constexpr char kHelp[] = "Printer";  // what is asked for with F1

// The whole sheet belongs to the page: it has its margins itself.
void SetSheet(QPrinter& printer, const PrintJob& job) {
  const bool lying = job.width > job.height;
  const QSizeF upright(std::min(job.width, job.height), std::max(job.width, job.height));
  printer.setDocName(PlainText(job.title));
  printer.setCreator(QStringLiteral("Kelvane"));
  printer.setFullPage(true);
  printer.setPageSize(QPageSize(upright, QPageSize::Point, {}, QPageSize::FuzzyMatch));
  printer.setPageOrientation(lying ? QPageLayout::Landscape : QPageLayout::Portrait);
  printer.setPageMargins(QMarginsF(0, 0, 0, 0));
}

QList<int> ChosenPages(const QPrinter& printer, const PrintJob& job) {
  QList<int> pages;
  if (printer.printRange() == QPrinter::CurrentPage) return {job.current};
  const bool all = printer.printRange() == QPrinter::AllPages || printer.fromPage() == 0;
  for (const int page : job.pages)
    if (all || (page >= printer.fromPage() && page <= printer.toPage())) pages += page;
  if (printer.pageOrder() == QPrinter::LastPageFirst) std::reverse(pages.begin(), pages.end());
  return pages;
}

// Every sheet in its turn, with the copies that the printer does not make itself.
QList<int> Sheets(const QPrinter& printer, const PrintJob& job) {
  const QList<int> pages = ChosenPages(printer, job);
  const int copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
  QList<int> sheets;
  if (printer.collateCopies()) {
    for (int i = 0; i < copies; ++i) sheets += pages;
  } else {
    for (const int page : pages) sheets += QList<int>(copies, page);
  }
  return sheets;
}

double DotsPerPoint(const QPrinter& printer) {
  return printer.resolution() / kPointsPerInch;
}

// Leaves the painter as it is needed for a sheet.
void PaintSheet(double ratio, QPainter& painter, const PrintJob& job, int page, bool embedsFonts) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(ratio, ratio);
  painter.setClipRect(QRectF(0, 0, job.width, job.height), Qt::IntersectClip);
  QtPrintPainter to(painter, embedsFonts);
  job.paint(page, static_cast<float>(ratio), to);
}

std::string NotTaken(const QPrinter& printer) {
  if (printer.outputFileName().isEmpty()) return "The printer does not take all of the pages.";
  return "There is no room for the printed pages in " + QDir::tempPath().toStdString() + ".";
}

// False if the person stopped it.
bool PaintSheets(QPrinter& printer, const PrintJob& job, QProgressDialog& progress) {
  const QList<int> sheets = Sheets(printer, job);
  // Only what makes a PDF has use for fonts.
  const bool embedsFonts = printer.paintEngine()->type() == QPaintEngine::Pdf;
  QPainter painter;
  if (!painter.begin(&printer)) throw Failure("The printer cannot be used.");
  for (qsizetype i = 0; i < sheets.size(); ++i) {
    progress.setMaximum(static_cast<int>(sheets.size()));
    progress.setValue(static_cast<int>(i));
    if (progress.wasCanceled()) return false;
    if (i > 0 && !printer.newPage()) throw Failure(NotTaken(printer));
    painter.save();
    PaintSheet(DotsPerPoint(printer), painter, job, sheets[i], embedsFonts);
    painter.restore();
  }
  if (!painter.end() || printer.printerState() == QPrinter::Error) throw Failure(NotTaken(printer));
  return true;
}

// A file that is printed to is made elsewhere first: what the person has under its name stays until the new
// one is whole.
class PrintedFile {
 public:
  explicit PrintedFile(QPrinter& printer) : printer_(printer), path_(printer.outputFileName()) {
    if (path_.isEmpty()) return;
    if (!sheets_.open()) throw Failure("Cannot make a file in " + QDir::tempPath().toStdString() + ".");
    printer_.setOutputFileName(sheets_.fileName());
  }
  ~PrintedFile() {
    if (!path_.isEmpty()) printer_.setOutputFileName(path_);
  }
  PrintedFile(const PrintedFile&) = delete;
  PrintedFile& operator=(const PrintedFile&) = delete;

  void PutInPlace() {
    constexpr qint64 kAtOnce = 1 << 20;
    if (path_.isEmpty()) return;
    SafeFile file(BackslashPath(QFile::encodeName(path_).toStdString()));
    for (QByteArray part = sheets_.read(kAtOnce); !part.isEmpty(); part = sheets_.read(kAtOnce))
      file.Append({part.constData(), static_cast<std::size_t>(part.size())});
    file.PutInPlace();
  }

 private:
  QPrinter& printer_;
  const QString path_;
  QTemporaryFile sheets_{QDir::tempPath() + QStringLiteral("/kelvane-XXXXXX.pdf")};
};

// False if the person stopped it. Nothing is left in the queue of a job that came to no end.
bool PrintTo(QPrinter& printer, const PrintJob& job, QWidget* above) {
  QProgressDialog progress(QStringLiteral("Printing"), QStringLiteral("Cancel"), 0, 0, above);
  progress.setWindowModality(Qt::WindowModal);
  PrintedFile file(printer);
  try {
    if (PaintSheets(printer, job, progress)) {
      file.PutInPlace();
      return true;
    }
  } catch (...) {
    printer.abort();
    throw;
  }
  printer.abort();
  return false;
}

}  // namespace

bool QtPrinter::Print(const PrintJob& job) {
  QPrinter printer(QPrinter::HighResolution);
  SetSheet(printer, job);
  QWidget* const above = QApplication::activeWindow();
  QPrintDialog dialog(&printer, above);
  dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange |
                    QAbstractPrintDialog::PrintCurrentPage | QAbstractPrintDialog::PrintCollateCopies);
  dialog.setMinMax(job.pages.front(), job.pages.back());
  dialog.setFromTo(job.pages.front(), job.pages.back());
  return RunDialog(dialog, kHelp) == QDialog::Accepted && PrintTo(printer, job, above);
}

namespace {

// The preview can show all its pages at a time, and then paints all of them.
constexpr qsizetype kMostPreviewed = 40;
constexpr int kRoom = 24;  // pixels beside its tool bar

// What is on a sheet of paper in the preview, painted whenever that comes into view.
class SheetInView final : public QGraphicsItem {
 public:
  using Paint = std::function<void(QPainter&)>;
  SheetInView(QGraphicsItem* paper, const QRectF& place, Paint paint)
      : QGraphicsItem(paper), place_(place), paint_(std::move(paint)) {}

  QRectF boundingRect() const override { return place_; }

  void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override {
    if (failed_) return;
    painter->save();
    painter->setClipRect(place_, Qt::IntersectClip);
    try {
      paint_(*painter);
    } catch (...) {
      // The message is a window of its own, which must not come up in the middle of painting.
      failed_ = true;
      QMetaObject::invokeMethod(
          scene(),
          [failure = std::current_exception()] { RunHandler([&] { std::rethrow_exception(failure); }); },
          Qt::QueuedConnection);
    }
    painter->restore();
  }

 private:
  const QRectF place_;
  const Paint paint_;
  bool failed_ = false;
};

// The desktop's preview of a job. Of a long one it shows a part, with buttons for those before and behind it.
class PreviewOfJob {
 public:
  explicit PreviewOfJob(const PrintJob& job)
      : job_(job), part_(job), dialog_(&printer_, QApplication::activeWindow()) {
    SetSheet(printer_, job);
    QObject::connect(&dialog_, &QPrintPreviewDialog::paintRequested, &dialog_, [this](QPrinter* to) {
      RunHandler([&] {
        // The preview asks for its own picture first, and for the sheets when the person prints from there.
        const bool shows = to->paintEngine()->type() == QPaintEngine::Picture;
        shows ? LayOutSheets() : void(PrintTo(*to, job_, &dialog_));
      });
    });
    QObject::connect(preview_, &QPrintPreviewWidget::previewChanged, &dialog_, [this] { FillSheets(); });
    if (Count() > kMostPreviewed) AddSteps();
    const auto current = std::find(job.pages.begin(), job.pages.end(), job.current);
    ShowFrom(current - job.pages.begin());
  }

  void Run() { RunDialog(dialog_, kHelp); }

 private:
  qsizetype Count() const { return static_cast<qsizetype>(job_.pages.size()); }

  void AddSteps() {
    auto* const bar = dialog_.findChild<QToolBar*>();
    earlier_ = bar->addAction(QStringLiteral("Earlier Pages"), &dialog_, [this] { Step(-kMostPreviewed); });
    later_ = bar->addAction(QStringLiteral("Later Pages"), &dialog_, [this] { Step(kMostPreviewed); });
    // So wide that the bar folds none of them away.
    dialog_.resize(std::max(dialog_.width(), bar->sizeHint().width() + kRoom), dialog_.height());
  }

  // The desktop keeps all that is drawn on its sheets, the outline of every letter, so it gets empty ones.
  void LayOutSheets() {
    sheets_ = Sheets(printer_, part_);
    QPainter painter;
    if (!painter.begin(&printer_)) throw Failure("The printer cannot be used.");
    for (qsizetype i = 1; i < sheets_.size(); ++i) printer_.newPage();
  }

  // Puts on the sheets of the preview, in their order, what is on them.
  void FillSheets() {
    const double ratio = DotsPerPoint(printer_);
    const QRectF place = QRectF(0, 0, job_.width * ratio, job_.height * ratio) &
                         printer_.pageLayout().fullRectPixels(printer_.resolution());
    qsizetype sheet = 0;
    for (QGraphicsItem* paper : preview_->findChild<QGraphicsView*>()->scene()->items(Qt::AscendingOrder)) {
      if (paper->parentItem() != nullptr) continue;
      if (sheet == sheets_.size()) return;
      const int page = sheets_[sheet++];
      if (!paper->childItems().isEmpty()) continue;
      new SheetInView(paper, place, [this, ratio, page](QPainter& painter) {
        PaintSheet(ratio, painter, part_, page, false);
      });
    }
  }

  void Step(qsizetype pages) {
    ShowFrom(first_ + pages);
    preview_->updatePreview();
    preview_->setCurrentPage(1);
  }

  void ShowFrom(qsizetype page) {
    first_ = std::clamp<qsizetype>(page, 0, std::max<qsizetype>(Count() - kMostPreviewed, 0));
    const qsizetype end = std::min(first_ + kMostPreviewed, Count());
    part_.pages.assign(job_.pages.begin() + first_, job_.pages.begin() + end);
    QString title = QStringLiteral("Print Preview: %1").arg(PlainText(job_.title));
    if (earlier_ != nullptr) {
      title += QStringLiteral(", pages %1 to %2").arg(part_.pages.front()).arg(part_.pages.back());
      earlier_->setEnabled(first_ > 0);
      later_->setEnabled(end < Count());
    }
    dialog_.setWindowTitle(title);
  }

  const PrintJob& job_;
  PrintJob part_;  // what is shown of it
  qsizetype first_ = 0;
  QPrinter printer_{QPrinter::HighResolution};
  QPrintPreviewDialog dialog_;
  QPrintPreviewWidget* const preview_ = dialog_.findChild<QPrintPreviewWidget*>();
  QList<int> sheets_;  // the page of each
  QAction* earlier_ = nullptr;
  QAction* later_ = nullptr;
};

}  // namespace

void QtPrinter::Preview(const PrintJob& job) {
  PreviewOfJob(job).Run();
  QPixmapCache::clear();  // it has the icons of the dialog, and the next dialog has others
  GiveBackMemory();       // pages were painted that the person may not go to
}

}  // namespace kelvane
