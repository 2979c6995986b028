#include "desktop/StringExtractWindow.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QFile>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>

#include "desktop/TableView.h"
#include "desktop/Text.h"

namespace tallowin::desktop {

namespace {

constexpr QSize kAnalysisSize{720, 680};  // the whole report
constexpr int kFileIconSize = 32;

/// Icon themes need not have any of the names, nor is there always a theme.
QIcon FileIcon(const QString& names) {
  for (const QString& name : names.split(' ')) {
    if (QIcon::hasThemeIcon(name)) return QIcon::fromTheme(name);
  }
  const bool isFolder = names.contains("folder") || names.contains("directory");
  return QApplication::style()->standardIcon(isFolder ? QStyle::SP_DirIcon : QStyle::SP_FileIcon);
}

/// In the host's bytes; empty if what is dragged is no file of this machine.
std::string DraggedFile(const QMimeData& data) {
  const auto urls = data.urls();
  if (urls.size() != 1 || !urls.constFirst().isLocalFile()) return {};
  return QFile::encodeName(urls.constFirst().toLocalFile()).toStdString();
}

}  // namespace

StringExtractWindow::StringExtractWindow(analysis::StringExtractFrm& form,
                                         platform::EventLoop& loop)
    : FormWindow(form, loop, WhenHidden::Hide, WhenShown::TakeKeyboard), form_(form) {
  auto* content = new QWidget(this);
  auto* layout = new QVBoxLayout(content);
  layout->addWidget(MakeSettings(content));
  layout->addWidget(MakePages(content), 1);
  setCentralWidget(content);
  setAcceptDrops(true);
  ResizeWithinScreen(kAnalysisSize);
  Follow();
}

QWidget* StringExtractWindow::MakeSettings(QWidget* parent) {
  auto* box = new QGroupBox(parent);
  auto* icon = new QLabel(box);
  auto* label = new QLabel(box);
  auto* edit = new QLineEdit(box);
  auto* browse = new QPushButton(box);
  auto* scan = new QPushButton(box);
  edit->setAcceptDrops(false);  // the window takes the name out of what is dropped
  icon->setAccessibleName(tr("Type of the file"));
  icon->setFixedSize(kFileIconSize, kFileIconSize);
  auto* layout = new QHBoxLayout(box);
  for (QWidget* part : {static_cast<QWidget*>(icon), static_cast<QWidget*>(label)}) {
    layout->addWidget(part);
  }
  layout->addWidget(edit, 1);
  layout->addWidget(browse);
  layout->addWidget(scan);
  Bindings().Bind(form_.Frame1, *box);
  Bindings().Bind(form_.Text1, *edit);
  Bindings().Bind(form_.Label2, *label, *edit);
  Bindings().Bind(form_.Command1, *browse);
  Bindings().Bind(form_.Command2, *scan);
  Bindings().Bind(form_.picIcon, *icon, [icon](const std::string& names) {
    return FileIcon(ToQString(names)).pixmap(icon->size(), icon->devicePixelRatioF());
  });
  connect(edit, &QLineEdit::returnPressed, scan, &QPushButton::click);
  edit->setFocus();
  return box;
}

QWidget* StringExtractWindow::MakePages(QWidget* parent) {
  auto* pages = new QTabWidget(parent);
  auto* report = new TableView(form_.VersionInfoView, Bindings(), pages);
  auto* strings = new TableView(form_.StringTableView, Bindings(), pages);
  strings->AlignRight(0);
  const auto& captions = form_.SSTab1.Captions();
  int page = 0;
  for (TableView* table : {report, strings}) {
    table->setAccessibleName(ToAccessibleName(captions[static_cast<std::size_t>(page++)]));
    pages->addTab(table, QString());
  }
  pages->setDocumentMode(true);
  Bindings().Bind(form_.SSTab1, *pages);
  Bindings().Bind(form_.VersionInfoView, *report);
  Bindings().Bind(form_.StringTableView, *strings);
  return pages;
}

void StringExtractWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!DraggedFile(*event->mimeData()).empty()) event->acceptProposedAction();
}

void StringExtractWindow::dropEvent(QDropEvent* event) {
  const std::string file = DraggedFile(*event->mimeData());
  event->acceptProposedAction();
  Bindings().Deliver([&] { form_.Text1.SetText(file); });
}

}  // namespace tallowin::desktop
