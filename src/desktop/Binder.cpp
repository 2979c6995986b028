#include "desktop/Binder.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPixmap>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <algorithm>
#include <limits>

#include "desktop/ItemListModel.h"
#include "desktop/TableView.h"
#include "desktop/Text.h"
#include "desktop/TextView.h"
#include "desktop/ToolBarView.h"

namespace tallowin::desktop {

namespace {

using forms::Change;
using forms::Property;

void ShowCommonState(const forms::Control& control, QWidget& widget) {
  widget.setEnabled(control.Enabled());
  widget.setVisible(control.Visible());
  widget.setToolTip(ToToolTip(control.ToolTip()));
}

bool Concerns(const Change& change, Property property) {
  return change.property == property || change.property == Property::Everything;
}

/// Leaves the cursor alone where the widget shows the text already, because it was typed there:
/// perhaps with characters that would show as their bytes.
void ShowText(const std::string& text, QLineEdit& edit) {
  if (FromQString(edit.text()) == text) return;
  const QString shown = ToQString(text);
  const QSignalBlocker quiet(edit);
  if (edit.text() != shown) edit.setText(shown);
  // Of a text that is longer than its box the beginning tells more.
  if (!edit.hasFocus()) edit.setCursorPosition(0);
}

}  // namespace

void Binder::Observe(forms::Control& control, forms::Observer observer) {
  observations_.push_back(control.Observe(std::move(observer)));
}

void Binder::BindCommon(forms::Control& control, QWidget& widget, forms::Observer observer) {
  widget.setObjectName(QString::fromStdString(control.Name()));
  if (widget.accessibleName().isEmpty()) {
    const std::string& name = control.Caption().empty() ? control.Name() : control.Caption();
    widget.setAccessibleName(ToAccessibleName(name));
  }
  Observe(control, [&control, &widget, observer = std::move(observer)](const Change& change) {
    switch (change.property) {
      case Property::Everything:
      case Property::Enabled:
      case Property::Visible:
      case Property::ToolTip:
        ShowCommonState(control, widget);
        break;
      case Property::Focus:
        widget.setFocus();
        break;
      default:
        break;
    }
    if (observer) observer(change);
  });
}

void Binder::Bind(forms::Label& control, QLabel& label, QWidget& buddy) {
  Bind(control, label);
  label.setBuddy(&buddy);
  Observe(control, [&control, &buddy](const Change& change) {
    if (!Concerns(change, Property::Caption)) return;
    buddy.setAccessibleName(ToAccessibleName(control.Caption()));
  });
}

void Binder::Bind(forms::Label& control, QLabel& label) {
  label.setTextFormat(Qt::PlainText);
  BindCommon(control, label, [&control, &label](const Change& change) {
    if (Concerns(change, Property::Caption)) label.setText(ToQString(control.Caption()));
  });
}

void Binder::Bind(forms::Frame& control, QGroupBox& box) {
  BindCommon(control, box, [&control, &box](const Change& change) {
    if (Concerns(change, Property::Caption)) box.setTitle(ToQString(control.Caption()));
  });
}

void Binder::Bind(forms::Button& control, QPushButton& button) {
  BindCommon(control, button, [&control, &button](const Change& change) {
    if (Concerns(change, Property::Caption)) button.setText(ToQString(control.Caption()));
  });
  QObject::connect(&button, &QPushButton::clicked, &button,
                   [this, &control] { Deliver([&control] { control.Click(); }); });
}

void Binder::Bind(forms::TextBox& control, QLineEdit& edit) {
  constexpr std::size_t kLongest = std::numeric_limits<int>::max();
  edit.setMaxLength(static_cast<int>(std::min(control.MaxLength(), kLongest)));
  edit.setReadOnly(control.Locked());
  BindCommon(control, edit, [&control, &edit](const Change& change) {
    if (Concerns(change, Property::Text) || change.property == Property::AppendedText) {
      ShowText(control.Text(), edit);
    }
  });
  QObject::connect(&edit, &QLineEdit::textEdited, &edit, [this, &control](const QString& text) {
    Deliver([&] { control.SetText(FromQString(text)); });
  });
}

void Binder::Bind(forms::TextBox& control, TextView& view) {
  BindCommon(control, view, [&control, &view](const Change& change) {
    if (change.property == Property::AppendedText) view.TextAppended();
    if (change.property == Property::SelStart) view.CaretMoved(control.SelStart());
    if (Concerns(change, Property::Text)) view.TextReplaced();
  });
}

void Binder::Bind(forms::ToolBar& control, ToolBarView& view) {
  Observe(control, [&control, &view](const Change& change) {
    if (change.property == Property::Enabled && !control.Enabled()) view.HoldKeyboard();
  });
  BindCommon(control, view, [&control, &view](const Change& change) {
    if (change.property == Property::Enabled && control.Enabled()) view.GiveKeyboardBack();
  });
}

void Binder::Bind(forms::ListView& control, TableView& view) {
  BindCommon(control, view, [&view](const Change& change) { view.Follow(change); });
}

void Binder::Bind(forms::SSTab& control, QTabWidget& tabs) {
  const auto& captions = control.Captions();
  for (std::size_t page = 0; page < captions.size(); ++page) {
    tabs.setTabText(static_cast<int>(page), ToQString(captions[page]));
  }
  BindCommon(control, tabs, [&control, &tabs](const Change& change) {
    if (!Concerns(change, Property::Value)) return;
    const QSignalBlocker quiet(tabs);
    tabs.setCurrentIndex(static_cast<int>(control.Tab()));
  });
  QObject::connect(&tabs, &QTabWidget::currentChanged, &tabs, [this, &control](int page) {
    Deliver([&control, page] { control.SetTab(static_cast<std::size_t>(page)); });
  });
}

void Binder::Bind(forms::PictureBox& control, QLabel& label,
                  std::function<QPixmap(const std::string& key)> picture) {
  BindCommon(control, label, [&, picture = std::move(picture)](const Change& change) {
    if (!Concerns(change, Property::Value)) return;
    const bool none = control.Picture().empty();
    label.setPixmap(none ? QPixmap() : picture(control.Picture()));
  });
}

void Binder::Bind(forms::ComboBox& control, QComboBox& box) {
  box.setInsertPolicy(QComboBox::NoInsert);
  // Enter stands for what was typed, and not for an entry like it.
  box.setDuplicatesEnabled(true);
  box.setCompleter(nullptr);
  box.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  auto* model = new ItemListModel(control, &box);
  box.setModel(model);
  BindCommon(control, box, [&control, &box, model](const Change& change) {
    {
      const QSignalBlocker quiet(box);
      if (change.property == Property::AddedItem) model->ItemAdded();
      if (Concerns(change, Property::Items)) model->ItemsChanged();
    }
    // The first entry of a list would put itself into the text.
    ShowText(control.Text(), *box.lineEdit());
  });
  QObject::connect(&box, &QComboBox::activated, &box, [this, &control](int index) {
    const auto row = static_cast<std::size_t>(index);
    if (row < control.ListCount()) Deliver([&] { control.Select(row); });
  });
  QObject::connect(box.lineEdit(), &QLineEdit::textEdited, &box,
                   [this, &control](const QString& text) {
                     Deliver([&] { control.SetText(FromQString(text)); });
                   });
}

}  // namespace tallowin::desktop
