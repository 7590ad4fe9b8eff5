#include "platform/qt/qt_menus.h"

#include <QKeySequence>
#include <QProxyStyle>
#include <utility>

#include "platform/handlers.h"
#include "platform/qt/qt_image_painter.h"
#include "platform/qt/qt_text.h"

namespace kelvane {

QtMenuEntry::QtMenuEntry(QAction* action, const std::string& caption, const std::string& key)
    : action_(action) {
  SetCaption(caption);
  if (!key.empty())
    action_->setShortcut(QKeySequence::fromString(PlainText(key), QKeySequence::PortableText));
  QObject::connect(action_, &QAction::triggered, action_, [this] {
    // Choosing toggled it; the owner decides.
    if (action_->isCheckable()) action_->setChecked(checked_);
    RunHandler(OnChosen);
  });
}

void QtMenuEntry::SetCaption(const std::string& caption) {
  caption_ = caption;
  action_->setText(PlainText(caption));
}

void QtMenuEntry::SetLiteralCaption(const std::string& caption) {
  caption_ = caption;
  action_->setText(VisibleText(caption).replace(u'&', QStringLiteral("&&")));
}

void QtMenuEntry::SetChecked(bool checked) {
  checked_ = checked;
  action_->setCheckable(true);
  action_->setChecked(checked);
}

void QtMenuEntry::SetEnabled(bool enabled) {
  action_->setEnabled(enabled);
}

void QtMenuEntry::ShowPicture(double ratio) {
  if (!picture_.paint) return;
  const MenuPicture picture = std::exchange(picture_, {});
  QtImagePainter painter(QSizeF(picture.width * ratio, picture.height * ratio).toSize(),
                         {0, 0, picture.width, picture.height}, ratio, Qt::white);
  picture.paint(painter, static_cast<float>(ratio));
  QPixmap shown = QPixmap::fromImage(painter.Picture());
  shown.setDevicePixelRatio(ratio);
  action_->setIcon(QIcon(shown));
}

namespace {

// Pictures are larger than the icons that menus have elsewhere.
class PictureStyle final : public QProxyStyle {
 public:
  explicit PictureStyle(QObject* parent) { setParent(parent); }
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
    constexpr int kPicture = 36;
    return metric == PM_SmallIconSize ? kPicture : QProxyStyle::pixelMetric(metric, option, widget);
  }
};

}  // namespace

QtMenu::QtMenu(QMenu* menu) : menu_(menu) {
  QObject::connect(menu_, &QMenu::aboutToShow, menu_, [this] {
    RunHandler(OnOpen);
    RunHandler([this] { ShowPictures(); });
  });
}

void QtMenu::ShowPictures() {
  for (QtMenuEntry& entry : entries_) {
    if (!entry.HasPicture()) continue;
    if (dynamic_cast<PictureStyle*>(menu_->style()) == nullptr) menu_->setStyle(new PictureStyle(menu_));
    entry.ShowPicture(menu_->devicePixelRatioF());
  }
}

Menu* QtMenu::AddMenu(const std::string& caption) {
  return &menus_.emplace_back(menu_->addMenu(PlainText(caption)));
}

MenuEntry* QtMenu::AddEntry(const std::string& caption, const std::string& key) {
  return &entries_.emplace_back(menu_->addAction(QString()), caption, key);
}

void QtMenu::AddSeparator() {
  menu_->addSeparator();
}

}  // namespace kelvane
